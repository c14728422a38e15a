#include "ReferencePicture.h"

#include <QDir>

#include <algorithm>
#include <cstdlib>

ReferencePictures::ReferencePictures(const std::string& folder)
    : m_folder(std::string(FORMWEAVE_SOURCE_DIR) + "/" + folder)
{}

testing::AssertionResult ReferencePictures::compare(const QImage& picture, const QImage& reference,
                                                    QImage* difference)
{
    if (picture.size() != reference.size())
        return testing::AssertionFailure()
               << "the picture has " << picture.width() << " by " << picture.height()
               << " pixels, the reference " << reference.width() << " by " << reference.height();
    const QImage a = picture.convertToFormat(QImage::Format_RGB32);
    const QImage b = reference.convertToFormat(QImage::Format_RGB32);
    if (difference) *difference = QImage(a.size(), QImage::Format_RGB32);
    int differing = 0, most = 0;
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            const int off[] = {std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                               std::abs(qBlue(p) - qBlue(q))};
            const int worst = std::max({off[0], off[1], off[2]});
            sum += off[0] + off[1] + off[2];
            most = std::max(most, worst);
            differing += worst > channelTolerance;
            if (!difference) continue;
            const int grey = qGray(q) / 3 + 60;
            difference->setPixel(x, y,
                                 worst > channelTolerance ? qRgb(std::min(255, 130 + worst), 0, 0)
                                                          : qRgb(grey, grey, grey));
        }
    }
    const int pixels = a.width() * a.height();
    const double mean = pixels ? sum / (3.0 * pixels) : 0;
    if (differing <= pixels / pixelTolerance && mean < meanTolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << differing << " of " << pixels << " pixels differ, by up to " << most
           << " levels; all channels by " << mean << " in the mean";
}

testing::AssertionResult ReferencePictures::match(const std::string& name,
                                                  const QImage& picture) const
{
    const QString file = QString::fromStdString(m_folder + "/" + name + ".png");
    if (std::getenv("FORMWEAVE_TEST_WRITE_REFERENCES")) {
        if (picture.convertToFormat(QImage::Format_RGB888).save(file, "PNG"))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "cannot write " << file.toStdString();
    }
    const QImage reference(file);
    QImage difference;
    testing::AssertionResult result =
        reference.isNull() ? testing::AssertionFailure() << "there is no " << file.toStdString()
                           : compare(picture, reference, &difference);
    if (result) return result;
    const QString left = QDir::current().filePath(QString::fromStdString(name));
    picture.save(left + ".actual.png", "PNG");
    result << "\n  reference:  " << file.toStdString() << "\n  picture:    " << left.toStdString()
           << ".actual.png";
    if (!difference.isNull()) {
        difference.save(left + ".difference.png", "PNG");
        result << "\n  difference: " << left.toStdString() << ".difference.png";
    }
    return result;
}

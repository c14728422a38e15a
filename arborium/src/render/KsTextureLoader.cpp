#include "render/KsTextureLoader.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KsLimits.h>

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>

#include <atomic>
#include <cstring>
#include <iterator>
#include <unordered_map>

namespace {
constexpr int s_maxSide = 8192;

bool fits(const QSize& size) { return size.width() <= s_maxSide && size.height() <= s_maxSide; }

/// A file as it is now: another content has another size or time.
std::string stateOf(const KbString& path)
{
    const std::string native = KbFileHelper::toNative(path);
    const QFileInfo file(QFile::decodeName(native.c_str()));
    return native + '\0' + std::to_string(file.size()) + '\0' +
           std::to_string(file.lastModified().toMSecsSinceEpoch());
}

KsTexturePtr load(const KbString& path, std::string& error)
{
    std::string bytes;
    const auto limit = static_cast<std::uint64_t>(KsLimits::current().fileBytes);
    switch (KbFileHelper::readWholeFile(path, limit, bytes)) {
    case KbFileHelper::Status::Ok: break;
    case KbFileHelper::Status::NotFound: error = "there is no such file"; return nullptr;
    case KbFileHelper::Status::NotRegular: error = "it is no regular file"; return nullptr;
    case KbFileHelper::Status::TooLarge: error = "the file is too large"; return nullptr;
    case KbFileHelper::Status::Failed: error = "the file cannot be read"; return nullptr;
    }

    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    // Asked before the pixels are decoded: a small file may stand for a huge image.
    if (reader.size().isValid() && !fits(reader.size())) {
        error = "the image is larger than 8192 pixels";
        return nullptr;
    }
    QImage image = reader.read();
    if (image.isNull() || !fits(image.size())) {
        error = image.isNull() ? reader.errorString().toStdString()
                               : std::string("the image is larger than 8192 pixels");
        return nullptr;
    }
    image = image.convertToFormat(QImage::Format_RGBA8888);

    static std::atomic<std::uint64_t> lastId{0};
    auto texture = std::make_shared<KsTextureImage>();
    texture->width = image.width();
    texture->height = image.height();
    texture->id = ++lastId;
    const auto rowBytes = static_cast<std::size_t>(image.width()) * 4;
    texture->rgba.resize(rowBytes * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(texture->rgba.data() + rowBytes * static_cast<std::size_t>(y),
                    image.constScanLine(image.height() - 1 - y), rowBytes);
    return texture;
}

} // namespace

KsTexturePtr ksLoadTexture(const KbString& path, std::string& error)
{
    // Whoever names the same file shares its image, as long as one of them has it.
    static auto& images = *new std::unordered_map<std::string, std::weak_ptr<const KsTextureImage>>;
    const std::string state = stateOf(path);
    const auto found = images.find(state);
    if (KsTexturePtr image = found == images.end() ? nullptr : found->second.lock()) return image;
    for (auto it = images.begin(); it != images.end();)
        it = it->second.expired() ? images.erase(it) : std::next(it);
    KsTexturePtr image = load(path, error);
    if (image) images[state] = image;
    return image;
}

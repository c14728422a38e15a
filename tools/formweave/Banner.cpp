#include "Banner.h"

#include <QEvent>
#include <algorithm>

namespace {

constexpr int maxLines = 2;

} // namespace

Banner::Banner(QWidget* window) : QLabel(window)
{
    setObjectName("FormweaveBanner");
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setMargin(6);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAutoFillBackground(true);
    QPalette colors = palette();
    colors.setColor(QPalette::Window, QColor(122, 22, 22));
    colors.setColor(QPalette::WindowText, Qt::white);
    setPalette(colors);
    window->installEventFilter(this);
    hide();
}

void Banner::setMessage(const std::string& text)
{
    // Few enough lines to leave what is below in sight.
    QStringList lines = QString::fromStdString(text).split('\n');
    if (lines.size() > maxLines) {
        const int more = lines.size() - maxLines;
        lines = lines.mid(0, maxLines) << QString("and %1 more").arg(more);
    }
    setText(lines.join('\n'));
    setVisible(!text.empty());
    fit();
}

void Banner::fit()
{
    const QSize window = parentWidget()->size();
    setGeometry(0, 0, window.width(), std::min(heightForWidth(window.width()), window.height()));
    raise();
}

bool Banner::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) fit();
    return QLabel::eventFilter(watched, event);
}

// Labels: their escapes, their size in pixels and in the scene, and the texts that hold them.

#include "KsTextLimits.h"

#include <arborium/actions/KsCallbackAction.h>
#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KbStringList.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsText3.h>
#include <formweave/KsFormweave.h>

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <algorithm>
#include <memory>

namespace {

QFont& font()
{
    // Never destroyed: widgets may still be measured while the process ends.
    static QFont& shared = *new QFont("Microsoft Sans Serif", 8, -1, false);
    return shared;
}

constexpr int labelMargin = 3;

/// Widths of texts in the font. A build asks for the same few again and again.
class TextWidths {
public:
    static TextWidths& instance()
    {
        static TextWidths& shared = *new TextWidths;
        return shared;
    }
    int height() { return metrics().height(); }
    int widthOf(const QString& text)
    {
        constexpr int longest = 64, most = 2048;
        if (text.size() > longest) return measured(text);
        metrics();
        const auto known = m_widths.constFind(text);
        if (known != m_widths.constEnd()) return *known;
        if (m_widths.size() >= most) m_widths.clear();
        return *m_widths.insert(text, measured(text));
    }
    void forget()
    {
        m_metrics.reset();
        m_widths.clear();
    }

private:
    /// Qt gives the place of an object, U+FFFC, a width below 0.
    int measured(const QString& text) { return std::max(metrics().horizontalAdvance(text), 0); }
    const QFontMetrics& metrics()
    {
        if (m_application != qGuiApp) {
            // Fonts come and go with the application.
            forget();
            m_application = qGuiApp;
            if (m_application)
                QObject::connect(m_application, &QGuiApplication::fontDatabaseChanged,
                                 m_application, [this] { forget(); });
        }
        if (!m_metrics) m_metrics = std::make_unique<QFontMetrics>(font());
        return *m_metrics;
    }
    QPointer<QGuiApplication> m_application;
    std::unique_ptr<QFontMetrics> m_metrics;
    QHash<QString, int> m_widths;
};

// Which escapes a text gets depends on the kind of its element. The kinds are asked for by name,
// so that a kind that is not registered is simply never met.
bool isKind(const KsFormweave* node, const char* typeName)
{
    if (!node) return false;
    const KsType type = KsType::fromName(typeName);
    return !type.isBad() && node->isOfType(type);
}

bool isEditText(const KsFormweave* node) { return isKind(node, "DialogEditText"); }

bool isOneLineEditText(const KsFormweave* node)
{
    if (!isEditText(node)) return false;
    const auto* multiLine = ksCast<KsSFBool>(node->getField("multiLine"));
    return multiLine && !multiLine->getValue();
}

// The conversion is the same on Latin-1 bytes and on UTF-16 units.
template <class Char>
std::basic_string<Char> unescape(const std::basic_string<Char>& text, bool withReturns)
{
    std::basic_string<Char> result;
    result.reserve(text.size());
    const auto lineFeed = [&] {
        if (withReturns) result += Char('\r');
        result += Char('\n');
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Char c = text[i];
        if (c == Char('\n')) {
            lineFeed();
        } else if (c == Char('\r')) {
            continue;
        } else if (c == Char('\\') && i + 1 < text.size()) {
            const Char escaped = text[++i];
            if (escaped == Char('n'))
                lineFeed();
            else if (escaped == Char('t'))
                result += Char('\t');
            else
                result += escaped;
        } else {
            result += c;
        }
    }
    return result;
}

// Between the halves of a surrogate pair, or before a mark that stands on the character before it.
bool isWithinCharacter(const std::u16string& text, int place)
{
    const auto i = static_cast<std::size_t>(place);
    return i < text.size() && (QChar::isLowSurrogate(text[i]) || QChar(text[i]).isMark());
}

QString toQString(const KbString& text) { return QString::fromStdU16String(text.toUtf16()); }

} // namespace

KbString KsFormweave::convertToCString(const KbString& text, KsFormweave* node)
{
    if (text.toLatin1().find_first_of("\\\r\n") == std::string::npos) return text;
    if (isKind(node, "DialogComboBox")) return text;
    const bool withReturns = isEditText(node);
    if (text.isUnicode()) return KbString::fromUtf16(unescape(text.toUtf16(), withReturns));
    return KbString(unescape(text.toLatin1(), withReturns));
}

KbString KsFormweave::convertFromCString(const KbString&, int) { return KbString(); }

int KsFormweave::getNumLines(const KbString& text)
{
    const std::u16string units = text.toUtf16();
    return static_cast<int>(std::count(units.begin(), units.end(), u'\n'));
}

bool KsFormweave::hasApplication(const char* where)
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) return true;
    // Null is silent.
    if (where) KsDebugError::post(where, "There is no QApplication");
    return false;
}

bool KsFormweave::mayBuildOn3DTraversal()
{
    // Told once: the elements of a scene are measured before each frame.
    static const char* where = "KsFormweave::getBoundingBox";
    return hasApplication(where) || (where = nullptr);
}

KbVec2i32 KsFormweave::getLabelPixelSize(KbString label, KsFormweave* node)
{
    if (label.isEmpty() || !hasApplication("KsFormweave::getLabelPixelSize")) return {0, 0};
    const QString text = toQString(ksShownText(convertToCString(label, node)));
    TextWidths& widths = TextWidths::instance();
    const int lines = isOneLineEditText(node) ? 1 : text.count('\n') + 1;
    if (lines < 2) return {widths.widthOf(text) + labelMargin, widths.height() + labelMargin};
    int widest = 0;
    for (const QStringRef& line : text.splitRef('\n'))
        widest = std::max(widest, widths.widthOf(line.toString()));
    return {widest + labelMargin, widths.height() * lines + labelMargin};
}

void KsFormweave::setFont(QFont newFont)
{
    font() = newFont;
    TextWidths::instance().forget();
}

QFont KsFormweave::getFormweaveFont() { return font(); }

void KsFormweave::setWidgetFont(QWidget* widget)
{
    if (widget) widget->setFont(font());
}

void KsFormweave::setStringToText3(KsText3* text, const KbString& s)
{
    if (!text) return;
    const KbStringList lines = KbStringList::split(ksShownText(s), "\n");
    for (int i = 0; i < lines.getLength(); ++i) text->string.set1Value(i, lines[i]);
}

void KsFormweave::showText3D(KsText3* text, const KbString& s)
{
    if (!text) return;
    text->string.setNum(0);
    setStringToText3(text, s);
}

int KsFormweave::insertTextTo3DText(KbString s, KsText3* text, int line, int position)
{
    if (!text || line < 0) return line;
    KsMFString& lines = text->string;
    const int count = lines.getNum();
    if (s.find("\n") != KbString::npos) {
        // The lines behind move on by two places; the editor rebuilds the text afterwards.
        for (int i = count - 1; i >= line + 2; --i) lines.set1Value(i + 1, KbString(lines[i - 1]));
        lines.set1Value(line + 1, KbString());
        return line + 1;
    }
    if (line >= count) {
        lines.set1Value(line, s);
        return line;
    }
    const KbString left = lines[line].getSubString(0, position);
    const KbString right = position == -1 ? KbString() : lines[line].getSubString(position, -1);
    lines.set1Value(line, left + s + right);
    return line;
}

int KsFormweave::wrap3DTextLine(KsText3* text, int line, float maxWidth, KsGroup* properties,
                                KsFormweave*)
{
    if (!text || line < 0 || line >= text->string.getNum()) return line;
    // The font and the scale in force behind the properties.
    KsFontState font;
    float scale = 1;
    const KsRef<KsSeparator> separator(new KsSeparator);
    if (properties) separator->addChild(properties);
    separator->addChild(text);
    KsCallbackAction action;
    action.setPreCallback([&](KsCallbackAction* a, const KsNode* node) {
        if (node != text) return KsCallbackAction::CONTINUE;
        font = a->getState()->font.get();
        KbVec3f x;
        a->getState()->modelMatrix.get().multDirMatrix(KbVec3f(1, 0, 0), x);
        scale = x.length();
        return KsCallbackAction::ABORT;
    });
    action.apply(separator.get());
    separator->removeAllChildren();

    // One layout of the whole line gives the width up to each place where it may break.
    const KbString whole = text->string[line];
    const std::vector<float> widths = KsText3::getPrefixWidths(whole, font);
    const int n = static_cast<int>(widths.size()) - 1;
    const std::u16string units = whole.isUnicode() ? whole.toUtf16() : std::u16string();
    const auto most = static_cast<std::size_t>(std::max(KsLimits::current().textLines, 1));
    std::vector<KbString> pieces;
    int start = 0;
    int fitting = 0; // the end of the last character that was narrower than the room
    for (int end = 1; end <= n; ++end) {
        if (end < n && isWithinCharacter(units, end)) continue;
        const float w =
            (widths[static_cast<std::size_t>(end)] - widths[static_cast<std::size_t>(start)]) *
            scale;
        if (w < maxWidth) {
            fitting = end;
            continue;
        }
        // The character that passes the width opens the next line, unless it stands alone.
        const int cut = w > maxWidth && fitting > start ? fitting : end;
        if (cut == n || pieces.size() + 1 >= most) break;
        pieces.push_back(whole.getSubString(start, cut));
        start = fitting = end = cut;
    }
    if (pieces.empty()) return line;
    pieces.push_back(whole.getSubString(start, -1));
    const int last = line + static_cast<int>(pieces.size()) - 1;
    const std::vector<KbString>& lines = text->string.values();
    pieces.insert(pieces.end(), lines.begin() + line + 1, lines.end());
    text->string.setValues(line, static_cast<int>(pieces.size()), pieces.data());
    return last;
}

KbBox3f KsFormweave::staleBox() { return KbBox3f(-1, -1, -1, -1, -1, -1); }

bool KsFormweave::isLabelCachedBBox() const { return m_labelCachedBBox != staleBox(); }

KbBox3f KsFormweave::measure3DText(KsNode* properties, KsText3* text)
{
    if (!text || !m_bboxAction) return KbBox3f(0, 0, 0, 0, 0, 0);
    KsRef<KsSeparator> separator(new KsSeparator);
    if (properties) separator->addChild(properties);
    separator->addChild(text);
    m_bboxAction->apply(separator.get());
    const KbBox3f box = m_bboxAction->getBoundingBox();
    return box.isEmpty() ? KbBox3f(0, 0, 0, 0, 0, 0) : box;
}

#include "KsDialogQEditText.h"

#include <formweave/KsDialogEditText.h>

#include <QKeyEvent>
#include <QTextCursor>

#include <limits>

namespace {

constexpr unsigned int enterPressed = 1;
constexpr unsigned int textChanged = 2;

/// As a text edit gives it back: each line break is a line feed, and a blank that does not break is
/// a blank.
QString asPlainText(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar& c : text) {
        if (c == QChar::Nbsp)
            c = QLatin1Char(' ');
        else if (c == QChar::LineSeparator || c == QChar::ParagraphSeparator ||
                 c == QLatin1Char('\r'))
            c = QLatin1Char('\n');
    }
    return text;
}

QTextCursor cursorAtEnd(QTextEdit* edit)
{
    QTextCursor cursor(edit->document());
    cursor.movePosition(QTextCursor::End);
    return cursor;
}

} // namespace

KsDialogQEditText::KsDialogQEditText(QWidget* parent, KsDialogEditText* editText, bool multiLine)
    : KsRelayFrame(parent, editText, "KsDialogQEditText"), m_parent(parent)
{
    createLabel();
    if (multiLine) {
        m_multi = new QTextEdit(this);
        m_multi->setAcceptRichText(false);
        adoptControl(m_multi, "MultiEditWidget");
        m_multi->installEventFilter(this);
        connect(m_multi, "2textChanged()", this, "1eventNotifyMultiLine()");
    } else {
        m_line = new QLineEdit(this);
        // Qt would cut the text at 32767 characters, and the field with it.
        m_line->setMaxLength(std::numeric_limits<int>::max());
        adoptControl(m_line, "LineEditWidget");
        connect(m_line, "2textChanged(const QString&)", this, "1eventNotifyLine(const QString&)");
        connect(m_line, "2returnPressed ()", this, "1eventEnterPressed()");
    }
}

KsDialogQEditText::~KsDialogQEditText()
{
    forgetNode();
    // The editor goes before the label, though it was made behind it.
    delete m_multi;
    delete m_line;
}

void KsDialogQEditText::updateEditTextWidget(int x, int y, int w, int h)
{
    if (m_multi)
        place(m_multi, x, y, w, h);
    else
        place(m_line, x, y, w, h);
}

void KsDialogQEditText::changeEditable(bool readOnly)
{
    if (m_multi) m_multi->setReadOnly(readOnly);
    if (m_line) m_line->setReadOnly(readOnly);
}

QString KsDialogQEditText::text() const
{
    if (m_multi) return m_multi->toPlainText();
    return m_line ? m_line->text() : QString();
}

void KsDialogQEditText::changeEditText(const QString& newText)
{
    const QString present = text();
    const QString wanted = m_multi ? asPlainText(newText) : newText;
    if (wanted == present) return;
    if (m_line) m_line->setText(wanted);
    if (!m_multi) return;
    // What is typed elsewhere at the end must not lay out the whole text.
    if (!present.isEmpty() && wanted.startsWith(present)) {
        cursorAtEnd(m_multi).insertText(wanted.mid(present.size()));
    } else if (!wanted.isEmpty() && present.startsWith(wanted)) {
        QTextCursor cursor = cursorAtEnd(m_multi);
        cursor.setPosition(wanted.size(), QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    } else {
        m_multi->setPlainText(wanted);
    }
}

void KsDialogQEditText::changeWrapLine(bool wrap)
{
    if (m_multi)
        m_multi->setWordWrapMode(wrap ? QTextOption::WrapAtWordBoundaryOrAnywhere
                                      : QTextOption::NoWrap);
}

QString KsDialogQEditText::getEditText() const { return QString::fromLatin1(text().toLatin1()); }

void KsDialogQEditText::takeOver(const KsDialogQEditText& earlier)
{
    changeEditText(earlier.text());
    if (m_multi && earlier.m_multi) {
        const QTextCursor from = earlier.m_multi->textCursor();
        QTextCursor cursor = m_multi->textCursor();
        cursor.setPosition(from.anchor());
        cursor.setPosition(from.position(), QTextCursor::KeepAnchor);
        m_multi->setTextCursor(cursor);
    } else if (m_line && earlier.m_line) {
        const QLineEdit* from = earlier.m_line;
        const int caret = from->cursorPosition();
        const int length = from->selectionLength();
        m_line->setCursorPosition(caret);
        // A selection of negative length leaves the caret at its left end.
        if (length > 0)
            m_line->setSelection(caret == from->selectionStart() ? from->selectionEnd()
                                                                 : from->selectionStart(),
                                 caret == from->selectionStart() ? -length : length);
    }
}

bool KsDialogQEditText::eventFilter(QObject* object, QEvent* event)
{
    // Other events come while the editor dies, too.
    if (event->type() != QEvent::KeyPress || object != m_multi)
        return KsRelayFrame::eventFilter(object, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) eventEnterPressed();
    return false;
}

void KsDialogQEditText::notifyUnlessSilent(unsigned int value)
{
    if (!m_silences) notify(value);
}

void KsDialogQEditText::eventNotifyLine(const QString&) { notifyUnlessSilent(textChanged); }

void KsDialogQEditText::eventNotifyMultiLine() { notifyUnlessSilent(textChanged); }

void KsDialogQEditText::eventEnterPressed() { notifyUnlessSilent(enterPressed); }

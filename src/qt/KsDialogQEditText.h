#pragma once

#include "KsRelay.h"

#include <QLineEdit>
#include <QTextEdit>

class KsDialogEditText;

/// Relay of an edit text: a line edit or a text edit.
class KsDialogQEditText : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQEditText(QWidget* parent, KsDialogEditText* editText, bool multiLine);
    ~KsDialogQEditText() override;

    /// While one lives the node does not hear what happens to the text.
    class Silence {
    public:
        explicit Silence(KsDialogQEditText* relay) : m_relay(relay)
        {
            if (m_relay) ++m_relay->m_silences;
        }
        ~Silence()
        {
            if (m_relay) --m_relay->m_silences;
        }
        Silence(const Silence&) = delete;
        Silence& operator=(const Silence&) = delete;

    private:
        QPointer<KsDialogQEditText> m_relay;
    };

    QWidget* getParent() const { return m_parent; }
    void updateEditTextWidget(int x, int y, int w, int h);
    void changeEditable(bool readOnly);
    /// Plain text. An editor that shows it already is left alone.
    void changeEditText(const QString& text);
    /// Nothing for a line edit.
    void changeWrapLine(bool wrap);
    /// Characters beyond Latin-1 are "?".
    QString getEditText() const;
    /// Text, selection and caret of another relay.
    void takeOver(const KsDialogQEditText& earlier);

    bool eventFilter(QObject* object, QEvent* event) override;

public slots:
    void eventNotifyLine(const QString& newText);
    void eventNotifyMultiLine();
    void eventEnterPressed();

private:
    void notifyUnlessSilent(unsigned int value);
    QString text() const;

    QWidget* m_parent;
    QPointer<QTextEdit> m_multi;
    QPointer<QLineEdit> m_line;
    int m_silences = 0;
};

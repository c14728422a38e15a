#pragma once

#include <formweave/KsDialogComponent.h>

#include <QFrame>
#include <QLabel>
#include <QPointer>

/// A text as widgets show it, cut at the limit for captions and labels.
QString ksShownQString(const KbString& text);

/// The time in which a widget's signal or event runs code of a node. The node lives until its end,
/// and widgets that are deleted meanwhile live until control is back in the event loop.
class KsRelayCall {
public:
    /// Null is allowed.
    explicit KsRelayCall(const KsFormweave* node) : m_keep(node) {}
    static bool isRunning() { return s_depth > 0; }

private:
    struct Depth {
        Depth() { ++s_depth; }
        ~Depth() { --s_depth; }
    };
    static int s_depth;

    Depth m_depth; // left last: the node may die when it is let go
    KsKeepAlive m_keep;
};

/// Deletes a widget of ours with what is in it: at once, or, while a relay call runs, when that is
/// over; it is then out of sight at once, and the relays in it no longer know their nodes. Null is
/// allowed.
void ksDeleteWidget(QWidget* widget);

/// The frame that stands for a node in a window. It holds the real widgets as children, turns
/// their signals into calls of the node's `eventNotify`, and places them where the node says. The
/// children are made, and go, in this order: the control, then the label.
class KsRelayFrame : public QFrame {
    Q_OBJECT

public:
    // Of the label; a subclass without one shows the node's label elsewhere.
    virtual void updateLabelWidget(int x, int y, int w, int h);
    /// Shown as plain text.
    virtual void changeLabel(const QString& text);
    /// `flags`: a `Qt::Alignment`.
    virtual void changeLabelAlignment(int flags);
    virtual void changeLabelVisibility(bool visible);

    /// What the element asks for: a layout gives it that before it shares out what is left.
    void setWantedSize(const QSize& size);
    QSize sizeHint() const override { return m_wantedSize; }

    /// Takes this frame out of service in favour of `successor`, which may be null: it forgets its
    /// node, is silenced, hands the keyboard focus on, leaves the window, and is deleted when no
    /// signal of it can be running any more.
    void handOverTo(QWidget* successor);
    /// From now on nothing that happens here reaches the node.
    void forgetNode();

protected:
    /// `className` is that of the subclass.
    KsRelayFrame(QWidget* parent, KsDialogComponent* node, const char* className);
    ~KsRelayFrame() override;

    /// Names a child: "LMN", the class name, `role`. It gets the library's font.
    void adopt(QWidget* child, const char* role);
    /// The same for the widget that takes the keyboard.
    void adoptControl(QWidget* child, const char* role);
    void createLabel();
    static void place(QWidget* child, int x, int y, int w, int h);
    /// Passes a signal's value to the node's `eventNotify`, if the node is still known.
    void notify(unsigned int value);
    void resizeEvent(QResizeEvent* event) override;
    /// Runs the node's layout operations, the control's first; the node is there.
    virtual void layoutChildren();
    /// Null after `forgetNode`.
    KsDialogComponent* node() const { return m_node; }

    QPointer<QLabel> m_label;

private:
    KsDialogComponent* m_node;
    const char* m_className;
    QSize m_wantedSize;
};

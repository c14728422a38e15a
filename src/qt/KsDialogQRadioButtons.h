#pragma once

#include "KsRelay.h"

class KsDialogRadioButtons;
class QButtonGroup;
class QGroupBox;
class QRadioButton;
class QVBoxLayout;

/// Relay of radio buttons: a titled box with one button below the other. The box shows the label.
class KsDialogQRadioButtons : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQRadioButtons(QWidget* parent, KsDialogRadioButtons* radioButtons);
    ~KsDialogQRadioButtons() override;

    /// Places the box.
    void updateLabelWidget(int x, int y, int w, int h) override;
    /// The title of the box.
    void changeLabel(const QString& text) override;
    /// Of the title.
    void changeLabelAlignment(int flags) override;

    /// A new button at a place in the column; a click on it reports that place.
    QRadioButton* addRadioButton(int index);
    /// Takes the last button away. It may be the one that has just been clicked.
    void removeLastRadioButton();
    int numRadioButtons() const;
    /// Nothing for a bad index.
    void changeItemText(int index, const QString& text);
    /// Checks a button without a notification, and sends it the keyboard's focus. Nothing for a bad
    /// index.
    void changeSelectedItem(int index);

public slots:
    /// `index`: the button that was clicked.
    void eventNotify(int index);

private:
    QPointer<QButtonGroup> m_group;
    QPointer<QGroupBox> m_box;
    QPointer<QVBoxLayout> m_column;
};

#pragma once

#include "KsRelay.h"

#include <formweave/KsDialogCustomSlider.h>

#include <QCheckBox>
#include <QLineEdit>

class KsDialogSlider;

/// Relay of the sliders: label, toggle, bar and the text of the value.
class KsDialogQSlider : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQSlider(QWidget* parent, KsDialogSlider* slider);

    void updateToggleWidget(int x, int y, int w, int h);
    void updateSliderWidget(int x, int y, int w, int h);
    void updateEditWidget(int x, int y, int w, int h);
    void changeContinuousTrigger(bool continuous);
    void changeValueVisible(bool visible);
    void changeToggleVisible(bool visible);
    void setEditText(const QString& text);
    /// As Latin-1; "0" when the editor is gone.
    std::string getEditText() const;
    bool getToggleState() const;
    /// It reports to the node by callbacks of its own.
    KsDialogCustomSlider* getSlider() const { return m_slider; }
    /// What the user left half done in an earlier relay goes on here: a text that was not entered
    /// yet, selection and caret, and the keyboard focus of each of the widgets.
    void goOnFrom(const KsDialogQSlider* earlier);

public slots:
    void eventNotify(int state);
    void eventNotifyPressed();

protected:
    void layoutChildren() override;
    // Nothing happens when the frame comes or goes.
    void hideEvent(QHideEvent*) override {}
    void showEvent(QShowEvent*) override {}

private:
    KsDialogSlider* slider() const;

    QPointer<QLineEdit> m_edit;
    QPointer<KsDialogCustomSlider> m_slider;
    QPointer<QCheckBox> m_toggle;
};

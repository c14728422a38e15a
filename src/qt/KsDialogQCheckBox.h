#pragma once

#include "KsRelay.h"

#include <QCheckBox>

class KsDialogCheckBox;

/// Relay of a check box.
class KsDialogQCheckBox : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQCheckBox(QWidget* parent, KsDialogCheckBox* checkBox);

    void updateCheckBoxWidget(int x, int y, int w, int h);
    void changeOnOffString(const QString& text);
    /// Checks or unchecks without a notification.
    void changeState(bool state);

public slots:
    /// `state`: a `Qt::CheckState`; partially checked counts as checked.
    void eventNotify(int state);

private:
    QPointer<QCheckBox> m_checkBox;
};

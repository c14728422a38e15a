#pragma once

#include "KsRelay.h"

#include <QComboBox>

class KsDialogComboBox;

/// Relay of a combo box.
class KsDialogQComboBox : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQComboBox(QWidget* parent, KsDialogComboBox* comboBox);

    void updateComboBoxWidget(int x, int y, int w, int h);
    /// Inserts one item before the one at `index`; behind the last if that is negative.
    void changeItems(const QString& text, int index);
    void clear();
    int count() const;
    /// Does not come back as a choice of the user.
    void changeSelectedItem(int index);

public slots:
    /// The user chose an item.
    void eventNotify(int selectedItem);

private:
    QPointer<QComboBox> m_comboBox;
};

#pragma once

#include <formweave/KsMenuItem.h>

/// A line between the entries of a menu. It has no text; a click on it does nothing.
class FORMWEAVE_API KsMenuSeparator : public KsMenuItem {
    KS_KIT_HEADER(KsMenuSeparator);

public:
    KsMenuSeparator();

    /// Nothing: no field of a separator is shown.
    void updateFromSensor(KsSensor* sensor) override;
    void destroyWidget() override;
    void changeEnable() override {}
    KbVec2i32 getItemInitSize() override;
    void setItemSize(KbVec2i32 size, int force) override;

    /// Built-in text of MenuSeparator.arb.
    static char* MenuSeparator;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsMenuSeparator() override;
    /// At each build one more line, as a menu that is built twice holds.
    void insertMenuItem() override;
    void create3DEntry() override;
    void update3DEntry() override;

private:
    void removeLines();

    std::vector<QPointer<QObject>> m_lines;
    KsRef<KsScale> m_lineScale;
};

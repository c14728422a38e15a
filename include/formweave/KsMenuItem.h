#pragma once

#include <formweave/KsFormweave.h>

#include <QPointer>
#include <vector>

class KsMenuBar;
class KsMenuRelay;

/// Base of what stands in a menu: entries, and menus within menus. In a window an entry is an action
/// of its menu, in a scene a box with a text; all entries are 18 high. The text is `label`, without
/// escapes: in a window "&" marks the letter of the keyboard, a tab begins a second column, and a
/// character outside Latin-1 becomes "?" (not in the title of a menu); in a scene it is shown as it
/// stands.
///
/// Accelerators are written as a person does: "Ctrl+Shift+S", "ALT+F4". The modifiers are
///
///     Ctrl CTRL ctrl Ctl    Shift SHIFT shift    Meta META    Alt ALT alt
///
/// They are found anywhere in the text ("Altitude" is Alt with the key "itude"), "+" is left out and
/// cannot be the key, and each counts as often as it stands there: "Ctrl+Ctrl+X" is Shift+X. A text
/// with a blank is no accelerator. Only windows have accelerators.
class FORMWEAVE_API KsMenuItem : public KsFormweave {
    KS_KIT_HEADER(KsMenuItem);

public:
    KsMenuItem();

    /// The nearest menu bar above; null if there is none.
    KsMenuBar* getMenuBar();
    /// By which a relay names the entry; 0 before the entry stands in a window. Of an entry that
    /// stands for several, the first one's: the others follow.
    int getId() const { return m_id; }
    /// Before the 3D build and without `setItemSize`: (0, 0).
    KbVec2i32 getItemSize() const { return m_itemSize; }

    // What menus call; an application has no need to.
    /// Builds or refreshes one presentation: an action in `parentMenu`, a `QWidget` of Qt's menu
    /// kinds, if `build2D` is not 0, else geometry. In a window an entry stands behind those that
    /// were built before it; `position` is not used.
    virtual void buildMenu(void* parentMenu, int build2D, int position);
    /// The user picked the entry in a window. `id` is that of the relay, where there are several.
    virtual void menuEvent(void* data, int id);
    /// Nothing.
    virtual void destroyNoDeleteMenuItem();
    /// Kept for programs that call it; without effect.
    void updateMenuItem() {}
    /// The size that the entry asks for.
    virtual KbVec2i32 getItemInitSize();
    /// Sets the width, once; with `force` also later. The height is the class's own.
    virtual void setItemSize(KbVec2i32 size, int force);

    void destroyWidget() override;
    void changeEnable() override;
    void change3DLabel() override;
    void refresh3DSkin() override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;

    /// Built-in text of MenuItem.arb.
    static char* MenuItem;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsMenuItem() override;

    // The steps of a build that an entry fills in; `buildMenu` calls them behind its own.
    /// Window, at each build: makes relays or menus, unless they are there.
    virtual void insertMenuItem() {}
    /// Scene, at the first build: nodes, looks, callbacks.
    virtual void create3DEntry() {}
    /// Scene, at each build and whenever a measure changed: sizes and places.
    virtual void update3DEntry() {}
    /// Arms the sensors of the class's own fields.
    virtual void armSensors() {}
    /// Whether a person can use it.
    virtual bool takesInput() const { return enable; }
    /// The text that stands for the entry now.
    virtual const KbString& shownLabel() const { return label.getValue(); }

    static constexpr int itemHeight = 18;
    static constexpr int toggleRoom = 28; ///< Beside the text of an entry with a toggle.

    // In a window.
    QWidget* parentMenu() const;
    /// Takes `count` identifiers in a row, of which the first becomes the entry's.
    int takeIds(int count);
    /// The relay's actions show the entry from now on.
    void addRelay(KsMenuRelay* relay);
    /// Takes the entry's actions out of the menu, and deletes the relays.
    void removeRelays();
    /// Null beyond the last.
    template <class Relay> Relay* relayAs(int index = 0) const
    {
        return static_cast<Relay*>(relayAt(index));
    }
    int getRelayCount() const { return static_cast<int>(m_relays.size()); }
    void showRelayLabel(int relay, const KbString& text);
    void showRelayAccelerator(int relay, const KbString& accelerator);

    // In a scene.
    /// A state's switch, and what is on its left: a shape of 14 by 14.
    void create3DToggle(SceneFrame& toggle, const char* part);
    /// Behind everything else, so that the text stands on top of it.
    void moveLabelToEnd();
    /// Whether what it stands on is a bar's strip.
    bool isDrawnByBar() const;
    bool hasItemFrame() const { return m_itemFrame.scale.get(); }
    void place3DItemFrame(const KbVec2i32& size, int y);
    void place3DLabel(float x, float y);
    /// Measures all that depends on the label, the size or the skin, and places it.
    void update3D();
    /// The text or the rows changed: what the entry stands in makes room for it.
    void fit3D();
    /// The corners of the label's box.
    void get3DLabelCachedBBox(KbVec3f& min, KbVec3f& max);
    /// In a callback: whether the pick is one of the entry, and the entry may be used.
    bool takesPick();
    /// A pick ends the use of the menu. The bar, which may be null, is that of the time before the
    /// auditors: one of them may take the entry out of its menu.
    static void closeMenus3D(KsMenuBar* bar);

    // Texts.
    /// What follows the first tab of a title; empty without a tab.
    static KbString getAccelerator(const KbString& title);
    /// The text of an accelerator as key sequences are written: modifiers in the order Alt, Meta,
    /// Shift, Ctrl, then what else stands there as the key. Empty for the empty text.
    static KbString getKeyCombination(const KbString& accelerator, KsMenuItem* item,
                                      unsigned int flags);
    /// `plain` becomes the title up to its first tab without each "&". The last letter that stood
    /// behind a "&"; 0 without one.
    static char buildTitleForMotifMenu(const KbString& title, KbString& plain);

    KbVec2i32 m_itemSize{0, 0};
    SceneText m_itemText;
    SceneFrame m_itemFrame; ///< Not in an entry right on a bar, which draws it.
    KsRef<KsTransform> m_itemTransform;

    /// Takes the 3D form down, so that the next build makes another one; the parts that a program
    /// gave stay.
    void takeDown3D();

private:
    KsMenuRelay* relayAt(int index) const;
    void create3DItem();
    void update3DItem();

    QPointer<QWidget> m_parentMenu;
    std::vector<QPointer<KsMenuRelay>> m_relays;
    int m_id = 0;
};

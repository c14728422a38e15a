#pragma once

#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbPList.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KbVec.h>
#include <arborium/fields/KsSField.h>
#include <arborium/kits/KsDragger.h>
#include <formweave/KsElementSensor.h>
#include <formweave/KsFormweaveApi.h>

#include <initializer_list>

class KsAuditor;
class KsElementList;
class KsEventCallback;
class KsGetBoundingBoxAction;
class KsGetMatrixAction;
class KsGroup;
class KsMaterial;
class KsNodeList;
class KsPickStyle;
class KsScale;
class KsSearchAction;
class KsText3;
class KsTransform;
class KsTranslation;
class QFont;
class QWidget;
struct KsSkinFamily;

/// Base of every dialog element. The same node is shown as Qt widgets (built by `buildWidget` with
/// a non-zero last argument) and as geometry in a scene (built by the first bounding-box traversal
/// that reaches it), or both, or neither. A change of a field updates what exists: an application
/// sets fields, and calls neither the `changeXxx` and `change3DXxx` operations of the classes nor the
/// others that elements override.
///
/// Of all elements: an auditor that is null, added twice, or removed without having been added
/// changes nothing.
///
/// Part: `geomSwitch`, below which all 3D geometry of an element hangs.
class FORMWEAVE_API KsFormweave : public KsDragger {
    KS_KIT_HEADER(KsFormweave);

public:
    enum LabelAlignment { LEFT = 0, CENTER = 1, RIGHT = 2 };

    KsSFBool enable;         ///< FALSE disables the widgets and greys the 3D form. Default TRUE.
    KsSFString label;        ///< Caption, with C-style escapes (\n, \t, \"). Default empty.
    KsSFString auditorID;    ///< By which an application finds the element. Default empty.
    KsSFEnum labelAlignment; ///< A `LabelAlignment`: of the label in its zone. Default RIGHT.

    // Start and stop.
    /// Starts the library. Nests: only the first call registers the classes. Trees can be read,
    /// changed and written with it; without a `QApplication` a build of either presentation posts a
    /// message and does nothing.
    static void init();
    /// Ends the library when called as often as `init`; the last call also empties the file cache.
    /// Without `init` it does nothing.
    static void finish();
    static bool isInitialized();
    static const char* getProductName(); ///< "Formweave"
    static const char* getVersion();     ///< Four numbers joined by points.

    // Dialog files.
    /// Reads a dialog file, once for each file name, and returns the first top-level element of it
    /// whose `auditorID` is `auditorId`; the first element of all if that is empty. The caller owns
    /// one reference more to the element; it stands in the cached tree, so a second call returns
    /// the same one. A relative name is looked for in "." and the other directories of `KsInput`.
    /// Null, with messages, if the file cannot be read or holds no such element.
    static KsFormweave* loadFromFile(KbString fileName, KbString auditorId = KbString());

    // Skins.
    /// Chooses a skin and loads it: a directory as it stands, or below ".", or below one of the
    /// skin directories. Dialogs on screen change their look. Nothing happens if there is none.
    static void setSkin(KbString path);
    /// As `setSkin`; always 1. In spite of its name it does not alter the list of directories.
    static int setSkinsDirectory(KbString path);
    /// As `getSkinsDirectories`.
    static KbString getSkinsDirectory();
    /// Sets the directories in which skins are looked for, separated by ";". Loads nothing.
    static void setSkinsDirectories(KbString directories);
    /// "$ARBHOME/data/Formweave/skins/" if ARBHOME is set, then FORMWEAVE_SKINS_DIR.
    static KbString getSkinsDirectories();
    // A part is the named group that a skin holds; if none holds one, the first there is.
    /// Gives the nodes that used the part before `free3DSkin` its new content.
    static void load3DSkin(KbString partName);
    /// Empties a part and sets it aside, its identity intact, for `load3DSkin`.
    static void free3DSkin(KbString partName);

    // Fonts and measures.
    /// The font of all widgets made from now on, and of all measuring in pixels.
    static void setFont(QFont font);
    static QFont getFormweaveFont();
    /// Gives a widget that font; null does nothing.
    static void setWidgetFont(QWidget* widget);
    /// Size in pixels of a label with its margin of 3; (0, 0) for an empty one. `node` may be null;
    /// it tells which escapes hold for its kind.
    static KbVec2i32 getLabelPixelSize(KbString label, KsFormweave* node);

    // The element in its tree.
    /// Containers call it; an application has no need to. Not referenced.
    void setParent(KsFormweave* parent) { m_parent = parent; }
    KsFormweave* getParentElement() const { return m_parent; }
    /// The element that owns the 3D build of this one: the nearest dialog above. Null if there is
    /// none, or if an element on the way cannot be traversed and `ignoreStop` is 0; then, and at
    /// the top, `acceptSelf` may yield this node itself.
    KsFormweave* getFirstTopParent(int ignoreStop, int acceptSelf);

    // Presentation states.
    bool isBuilt2D() const { return m_build2D != 0; }
    int isBuilt3D() const { return m_built3D; }
    void setBuilt3D(int built);
    /// FALSE for a container out of which a descendant was built alone: it takes no part in 3D.
    int canBeTraversed() const { return m_canBeTraversed; }
    void setCanBeTraversed(int can) { m_canBeTraversed = can; }
    /// TRUE if changes of fields reach the 3D form.
    bool is3DLive() const { return m_built3D && m_canBeTraversed; }
    int isShown3D() const { return m_show3D; }
    /// FALSE while the 3D form of the children is hidden: a child built then stays hidden.
    virtual int showsChildren3D() const { return m_show3D; }
    /// The child elements of a container; null for other elements.
    virtual const KsElementList* getElements() const { return nullptr; }

    // The interface that elements override. An application calls none of it but `show3D`.
    /// Builds or refreshes one presentation: Qt widgets below `parent` if `build2D` is not 0, else
    /// geometry. `size` overrides the element's own where it is not 0; `position` is the place
    /// within the parent, from its upper left corner, y down.
    virtual void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D);
    /// Takes the widgets of this element and what is below it down.
    virtual void destroyWidget();
    /// The field of `sensor` changed.
    virtual void updateFromSensor(KsSensor* sensor);
    /// Reports an action of `node`, an element below this one.
    virtual void applyAuditor(KsFormweave* node);
    /// Back to the sizes that the application had asked for.
    virtual void resetSize();
    // Bring the window (`changeXxx`) or the scene (`change3DXxx`) up to date with a field.
    virtual void changeEnable();
    virtual void changeLabel();
    virtual void changeLabelAlignment();
    /// Hides (0) or shows what is built of the element in 3D, with all that is in it. A menu or tab
    /// dialog below shows what it has open.
    virtual void show3D(int show);
    virtual void set3DParentTranslation(KbVec3f& translation);
    virtual void change3DPosition();
    virtual void change3DWidgetEnable(int enable);
    virtual void change3DEnable();
    virtual void change3DLabel();
    virtual void change3DLabelAlignment();
    /// Closes what the element has open when another one takes the interaction.
    virtual void set3DInactive();

    /// After a swap of skins: what was measured of the old one is measured again.
    virtual void refresh3DSkin();

    /// Built-in text of TextProperties.arb.
    static char* TextProperties;
    static int m_errorMsgDelivered;

    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    KsFormweave();
    ~KsFormweave() override;
    void destroy() override;
    /// A copy is not built; it makes its 3D form anew.
    bool copiesStructure() const override { return false; }
    void dragLost() final;
    /// A press or drag in a scene ends without its release (a message box was shown, or the element
    /// left the scene): what shows or hides something for as long as it lasts is put back.
    virtual void abandonDrag3D() {}
    /// Scene: grey and out of reach, or as its looks are, with the pick style `enabledPickStyle`.
    void paintEnabled(bool enabled, int enabledPickStyle);

    // Auditors. The list holds plain pointers; the application owns what they point to.
    void addAuditor(KsAuditor* auditor);
    void removeAuditor(KsAuditor* auditor);
    /// The slot at `index`; a slot that holds null if the index is out of range.
    KsAuditor*& getAuditor(int index);
    int getAuditorListLength() const;
    /// Calls `tell` for each auditor in list order. The element stays alive meanwhile, and the
    /// list may change: an auditor that was removed is not called any more, one that was added is
    /// called the next time.
    template <class Tell> void forEachAuditor(Tell&& tell)
    {
        if (!m_auditorList) return;
        KsKeepAlive keep(this);
        const KbPList present = *m_auditorList;
        for (void* auditor : present) {
            if (m_auditorList->find(auditor) != -1) tell(static_cast<KsAuditor*>(auditor));
        }
    }

    /// Reports an action of `self`: by `tell` to each of its own auditors, which are of type
    /// `Auditor`; if it has none, to what it stands in.
    template <class Self, class Auditor, class Kind>
    static void reportAction(Self* self, void (Auditor::*tell)(Kind*))
    {
        if (self->getAuditorListLength()) {
            self->forEachAuditor(
                [=](KsAuditor* auditor) { (static_cast<Auditor*>(auditor)->*tell)(self); });
        } else if (const KsRef<KsFormweave> parent = self->m_parent) {
            parent->applyAuditor(self);
        }
    }

    static int existWidget(QWidget* widget) { return widget ? 1 : 0; }
    static void fieldChangedCB(void* data, KsSensor* sensor);
    /// FALSE, with a message from `where`, if there is no `QApplication`: what needs one is left
    /// undone.
    static bool hasApplication(const char* where);
    /// Makes `node` the one active element in 3D, closing what the former one has open. Null is
    /// allowed.
    static void set3DCurrentActive(KsFormweave* node);
    /// To be called when the element opens a list or menu and is the active one: from now on a
    /// press that does not go to it or to what is in it makes no element active.
    void closeOnPressElsewhere();
    static void destroyByRef(KsFormweave* node);
    /// Updates both presentations, as far as they exist, Qt first.
    template <class Self>
    static void updateBoth(Self* self, void (Self::*in2D)(), void (Self::*in3D)())
    {
        KsKeepAlive keep(self);
        if (self->m_build2D && in2D) (self->*in2D)();
        if (self->is3DLive() && in3D) (self->*in3D)();
    }

    // Text services.
    static KbString convertToCString(const KbString& text, KsFormweave* node);
    static KbString convertFromCString(const KbString& text, int flag);
    static int getNumLines(const KbString& text);
    static void setStringToText3(KsText3* text, const KbString& s);
    /// Replaces all lines of a 3D text.
    static void showText3D(KsText3* text, const KbString& s);
    static int insertTextTo3DText(KbString s, KsText3* text, int line, int position);
    static int wrap3DTextLine(KsText3* text, int line, float maxWidth, KsGroup* properties,
                              KsFormweave* node);
    bool isLabelCachedBBox() const;
    void setLabelCacheBBox(KbBox3f box) { m_labelCachedBBox = box; }
    KbBox3f getLabelCachedBBox() const { return m_labelCachedBBox; }
    /// The box that stands for "not measured": all six coordinates -1.
    static KbBox3f staleBox();
    /// The box of a 3D text in front of which `properties` stands.
    KbBox3f measure3DText(KsNode* properties, KsText3* text);

    // Skins.
    static KsGroup* readFromFile(const KbString& fileName);
    /// What was read of skins so far; it stays until the process ends.
    static const KsNodeList& getSkinRoots();
    static void readDefaultSkinsParts(const KbString& fileName, const char* builtIn);
    static void change3DSkin();
    void loadFontProperties();
    /// The part shows the look of that name of the skin; it is empty if the skin has none.
    void setPartFromSkin(const char* part, const char* skinName);
    void writeNode(char* fileName);

    // Placement in 3D.
    void create3DFormweave();
    void apply3DParentTranslation();
    KbVec3f get3DParentTranslation() const { return m_parentTranslation; }
    /// Adds the depth of `node`'s skin parts (measured when `depth` is -1, and kept in it) and the
    /// place of the 3D parent to `v`.
    void apply3DTranslation(KsNode* node, float& depth, KbVec3f& v);
    float compute3DDepth(KsNode* node);
    /// Sets `transform` to the translation and rotation in force behind the content of `node`, with
    /// unit scale: what follows is placed on top of it, but not stretched by it.
    void undoTransformMatrix(KsNode* node, KsTransform* transform);
    /// The lazy build: `build` runs with notification off, once, before the first measuring.
    template <class Build> void buildOn3DTraversal(Build&& build)
    {
        if (isBuilt3D() || !mayBuildOn3DTraversal()) return;
        KsKeepAlive keep(this);
        const bool notify = enableNotify(false);
        build();
        enableNotify(notify);
    }
    /// The container that was not reached first takes no part: this element stands alone.
    void detachFromUnbuiltTop(KsFormweave* top);

    // What elements are made of in a scene.
    /// A text: front faces behind a translation of their own.
    struct SceneText {
        KsRef<KsTranslation> translation;
        KsRef<KsText3> text;
        KbBox3f box = staleBox();
    };
    /// A shape of unit size that is moved and scaled.
    struct SceneFrame {
        KsRef<KsTranslation> translation;
        KsRef<KsScale> scale;
    };
    struct PartLook {
        const char* part;
        const char* skinName;
    };
    /// Loads the fonts and, if there is one, the family; then gives each part its look.
    void dress3D(KsSkinFamily* family, std::initializer_list<PartLook> looks);
    void insertFirst(KsNode* node, const char* part);
    void insertBefore(KsNode* node, const char* part);
    void insertBehind(KsNode* node, const char* part);
    /// A new node in `slot`, as the first child of a part.
    template <class Node> void putFirst(KsRef<Node>& slot, const char* part)
    {
        slot = new Node;
        insertFirst(slot.get(), part);
    }
    /// A new node in `slot`, among the siblings of a part and just before it.
    template <class Node> void putBefore(KsRef<Node>& slot, const char* part)
    {
        slot = new Node;
        insertBefore(slot.get(), part);
    }
    /// The same just behind the part.
    template <class Node> void putBehind(KsRef<Node>& slot, const char* part)
    {
        slot = new Node;
        insertBehind(slot.get(), part);
    }
    /// Translation first and text last in a part.
    void create3DText(SceneText& text, const char* part);
    /// Replaces all lines; the box is measured again when it is next asked for.
    static void show3DText(SceneText& text, const KbString& s);
    /// Measured behind the content of the part `properties`.
    const KbBox3f& textBox3D(SceneText& text, const char* properties);
    /// By how much a text has to move so that its middle is at height 0.
    static float centreY(const KbBox3f& box);
    /// TRUE if the press or click that is being handled is on one of the parts.
    bool isPicked(std::initializer_list<const char*> parts);
    /// The switches of these parts show the released look if they showed the pressed one.
    void release3DParts(std::initializer_list<const char*> switches);
    /// Closes what another element has open; nothing stays open here.
    void closeOther3D();

    int m_build2D = 0;
    QWidget* m_parentWidget = nullptr;
    KsFormweave* m_parent = nullptr;
    std::unique_ptr<KbPList> m_auditorList;
    KsElementSensor m_enableSensor, m_labelSensor, m_labelAlignmentSensor;
    std::unique_ptr<KsGetBoundingBoxAction> m_bboxAction;
    std::unique_ptr<KsSearchAction> m_searchAction;
    std::unique_ptr<KsGetMatrixAction> m_matrixAction;
    KsRef<KsPickStyle> m_pickStyle;
    KsRef<KsMaterial> m_material;
    KsRef<KsEventCallback> m_pressListener;
    int m_show3D = 1;
    KbBox3f m_labelCachedBBox;
    int m_built3D = 0;
    int m_canBeTraversed = 1;
    KsRef<KsTranslation> m_parentTranslationNode;
    KbVec3f m_parentTranslation{0, 0, 0};

    static int s_initRefCount;
    static KbPList* s_listData;
    static KsFormweave* m_lastActive;

private:
    friend class KsElementList;
    friend class KsElementSensor;
    friend struct KsSkinFamily;
    static KbString& s_skinsPath();
    /// Loads the skin that the environment names, if none was chosen yet.
    static void chooseSkin();
    static void refreshAll3DSkins();
    static bool mayBuildOn3DTraversal();
    static void pressedCB(void* data, KsEventCallback* node);
    int placeBeside(KsGroup*& group, const char* part);
};

#pragma once

#include <arborium/fields/KsClassRecord.h>

#include <cstdint>
#include <memory>

class KsAction;
class KsCallbackAction;
class KsChildList;
class KsGetBoundingBoxAction;
class KsGetMatrixAction;
class KsHandleEventAction;
class KsNodeList;
class KsNodeSensor;
class KsPath;
class KsRayPickAction;
class KsRenderAction;
class KsSearchAction;
class KsWriteAction;

/// Watches a scene for changes that call for a new frame.
class ARBORIUM_API KsSceneObserver {
public:
    virtual ~KsSceneObserver() = default;
    /// Something below the node changed for the first time since the last traversal.
    virtual void sceneChanged() = 0;
};

/// A node of the scene graph. One that was made with `new` has no reference yet: it lives until the
/// last of its references (of a parent, a field, a `KsRef`) goes. Its fields have their default
/// values.
class ARBORIUM_API KsNode : public KsFieldContainer {
public:
    static KsType getClassTypeId() { return classRecord.classTypeId; }
    static void initClass();
    static void exitClass();
    static KsClassRecord classRecord;
    /// Registers all node classes of the layer, and takes them out again. They pair.
    static void initClasses();
    static void exitClasses();

    /// Appends the nodes named `name`, in the order of their naming, and returns their number.
    /// Nodes outside of every scene count too.
    static int getByName(const KbName& name, KsNodeList& list);
    /// The first node named `name`, or null.
    static KsNode* getByName(const KbName& name);

    /// A copy of this node and what is below it; nodes that are met twice are shared in the copy
    /// too. Connections are copied between copied nodes, and to nodes outside if
    /// `copyConnections`. The copy has no reference.
    KsNode* copy(bool copyConnections = false) const;
    /// Runs the change notification without a change.
    void touch();

    // The hooks of the actions. Each does by default what `doAction` does; `doAction` does nothing.
    virtual void doAction(KsAction* action);
    virtual void getBoundingBox(KsGetBoundingBoxAction* action);
    virtual void getMatrix(KsGetMatrixAction* action);
    virtual void GLRender(KsRenderAction* action);
    virtual void rayPick(KsRayPickAction* action);
    virtual void handleEvent(KsHandleEventAction* action);
    virtual void callback(KsCallbackAction* action);
    virtual void search(KsSearchAction* action);
    virtual void write(KsWriteAction* action);

    /// TRUE for nodes that act on what stands behind them in their group: all but shapes,
    /// separators, kits, files and groups without children.
    virtual bool affectsState() const { return true; }
    /// The children that are traversed, hidden ones too; null for a node that has no place for any.
    virtual KsChildList* getChildren() const { return nullptr; }
    // Children, of whatever kind of node: what a class overrides to count as a group. Of other
    // classes these post a message and do nothing; nothing is found and nothing is there to remove.
    virtual void internalAddChild(KsNode* child);
    virtual void internalInsertChild(KsNode* child, int index);
    virtual KsNode* internalGetChild(int index) const;
    virtual int internalFindChild(const KsNode* child) const;
    virtual void internalRemoveChild(KsNode* child);
    virtual void internalRemoveChild(int index);
    virtual void internalRemoveAllChildren();
    virtual void internalReplaceChild(KsNode* oldChild, KsNode* newChild);
    virtual void internalReplaceChild(int index, KsNode* newChild);

    /// 1 for classes that are compiled into a library.
    virtual int getIsBuiltIn() const { return 1; }
    /// The catalog of a kit's class; null for other nodes.
    virtual const KsNodekitCatalog* getNodekitCatalog() const { return nullptr; }

    /// A number for the next class that is registered; a class without fields of a parent takes it.
    static int getNextActionMethodIndex();
    /// The next class gets another number.
    static void incNextActionMethodIndex();

    // Parents: every container that holds this node as a child or in a field.
    /// One that holds it twice counts once.
    int getNumParents() const;
    /// In no particular order; null if the index is out of range.
    KsNode* getParent(int index) const;
    /// TRUE if `node` is this node or stands above it; FALSE for null.
    bool isBelow(const KsNode* node) const;

    /// An observer is told of changes until it is removed: it must be removed before it dies. Null
    /// is ignored. The node is not kept alive.
    void addObserver(KsSceneObserver* observer);
    void removeObserver(KsSceneObserver* observer);

    // Plumbing.
    void addParent(KsNode* parent);
    void removeParent(KsNode* parent);
    /// FALSE if this node never was a parent of another one.
    bool mayHold() const { return m_wasParent; }
    /// Whether `parent` is its only parent, and holds it once.
    bool isOnlyChildOf(const KsNode* parent) const
    {
        return m_parents == reinterpret_cast<std::uintptr_t>(parent);
    }
    /// Its index in the list of children that counts on it; anything while none does.
    int getPlace() const { return m_place; }
    void setPlace(int index) { m_place = index; }

    // What is kept of a scene (boxes, draw lists) is stale where a node is marked; a marked node
    // has only marked nodes above it, as far as these keep anything of it.
    enum Stale : std::uint8_t { StaleBox = 1, StaleDraw = 2, StaleAll = 3 };
    bool isStale(Stale what) const { return m_stale & what; }
    /// To be called by a traversal before it goes below this node.
    void clearStale(Stale what) { m_stale = static_cast<std::uint8_t>(m_stale & ~what); }
    void markChanged() override;
    /// FALSE as long as no `KsNodeSensor` of the process is attached.
    static bool hasSensors() { return s_numSensors > 0; }
    void tellSensors(KsField* field) override;
    KsNode* asNode() override { return this; }
    void addSensor(KsNodeSensor* sensor);
    void removeSensor(KsNodeSensor* sensor);

protected:
    KsNode();
    ~KsNode() override;
    void notifyDelete() override;
    /// Copies what is no field; `copies` gives the copy of a node (the node itself if it is not
    /// copied). Called after the fields are copied.
    class Copier;
    virtual void copyContents(const KsNode* from, Copier& copier);

private:
    friend class Copier;
    struct Watchers;
    struct ManyParents;
    Watchers& watchers();
    void dropWatchers();
    template <class Function> void forEachParent(Function function) const;

    std::uintptr_t m_parents = 0; // none, one parent, or (lowest bit set) a table of many
    Watchers* m_watchers = nullptr;
    std::uint8_t m_stale = StaleAll;
    bool m_wasParent = false; // never reset: something may stand below
    std::int32_t m_place = 0;
    static int s_numSensors; // attached ones, in the whole process
};

/// Finds or makes the copies of nodes during one `copy`.
class ARBORIUM_API KsNode::Copier {
public:
    /// The copy of `node`, made if needed; null for null or for a class that cannot be created. In
    /// deep trees it is filled later.
    KsNode* copyOf(const KsNode* node);
    /// Lets a node that has no copy yet be shared by the copies of what refers to it.
    void keep(const KsNode* node);
    /// The copy of `node` if it has been made, else `node` itself.
    KsNode* find(const KsNode* node) const;

    // Plumbing: what `KsNode::copy` does.
    /// With connections to fields outside of what is copied, if asked.
    explicit Copier(bool copyConnections);
    ~Copier();
    /// Fills what is still empty and connects the fields. `root` is left without a reference.
    void finish(KsNode* root);

private:
    void fill(const KsNode* from, KsNode* to);
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

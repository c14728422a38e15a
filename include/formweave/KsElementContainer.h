#pragma once

#include <formweave/KsFormweave.h>

#include <functional>

class KsElementList;

/// Whether an input is read in the binary form.
FORMWEAVE_API bool ksIsBinary(KsInput* in);

/// What tells one class that holds elements from another.
struct KsElementListTraits {
    const char* className;       ///< In messages.
    KsType (*childType)();       ///< What the class holds.
    const char* getChildWarning; ///< Ends the message of a `getChild` out of range.
    bool hidesChildrenOnSync;    ///< Children stay on this side when a cluster is brought in step.
    /// In messages of an index to insert at or to get that is out of range; null: `className`.
    const char* indexClassName = nullptr;
};

/// The child elements of a container: the first entries of its `KsChildList`, in front of the kit's
/// own node. Everything that the eight classes with child elements do alike stands here.
class FORMWEAVE_API KsElementList {
public:
    KsElementList(KsFormweave* owner, const KsElementListTraits& traits);
    ~KsElementList();
    KsElementList(const KsElementList&) = delete;
    KsElementList& operator=(const KsElementList&) = delete;

    // Each posts a message and changes nothing if the child is null, stands in a container already,
    // or the index is out of range. TRUE if something changed.
    bool add(KsFormweave* child);
    bool insert(KsFormweave* child, int index);
    bool remove(int index);
    bool removeAll();
    bool replace(int index, KsFormweave* child);
    /// Null with a message at or beyond the count, null without one for a negative index.
    KsFormweave* get(int index) const;
    /// The child at `index`, which must be in range.
    KsFormweave* at(int index) const;
    int find(const KsNode* child) const;
    int count() const { return m_count; }

    bool read(KsInput* in, const std::function<void(KsFormweave*)>& add);
    void write(KsWriteAction* action);
    void search(KsSearchAction* action);
    void rayPick(KsRayPickAction* action);
    /// Calls `visit` for each child in order. The list may change meanwhile: each child that stays
    /// is visited once, one that is removed before its turn is not, one that joins behind the
    /// present one is.
    template <class Visit> void forEach(Visit&& visit) const
    {
        const KsKeepAlive keep(m_owner);
        Walk walk(*this);
        for (; walk.index < m_count; ++walk.index) {
            const KsRef<KsFormweave> child(at(walk.index));
            visit(child.get());
        }
    }
    /// Index of `child`, at once for the one that `forEach` visits.
    int indexOf(const KsFormweave* child) const
    {
        const int index = m_walk ? m_walk->index : -1;
        return index >= 0 && index < m_count && at(index) == child ? index : find(child);
    }
    /// Takes in what a copy of the owner has been given in its `KsChildList`.
    void adoptCopies();
    /// The owner goes: the children forget it.
    void orphanChildren();

private:
    /// Where a `forEach` stands; the innermost first.
    struct FORMWEAVE_API Walk {
        explicit Walk(const KsElementList& walked);
        ~Walk();
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;

        const KsElementList& list;
        Walk* const outer;
        int index = 0;
    };

    bool mayTake(KsFormweave* child, const char* operation) const;
    void post(const char* operation, int index, int last) const;
    void postAt(const char* className, const char* operation, int index, int last,
                const char* end = "") const;
    const char* indexClassName() const
    {
        return m_traits.indexClassName ? m_traits.indexClassName : m_traits.className;
    }
    void place(KsFormweave* child, int index);
    /// Moves every walk that stands at or behind `index`.
    void shiftWalks(int index, int by);
    void join(KsFormweave* child);
    /// Takes the widgets of the child at `index` down. Its index then; -1 if it is gone.
    int retire(int index);
    /// A child that was taken out stands on its own.
    static void letGo(KsFormweave* child);

    KsFormweave* m_owner;
    const KsElementListTraits& m_traits;
    int m_count = 0;
    mutable Walk* m_walk = nullptr;
};

/// `Base` with child elements of type `Child`: what a `KsTopLevelDialog`, a group, a menu and a
/// launcher are.
///
/// A container holds a reference to each child, and is its one parent: a child that stands in a
/// container already is refused, and so are null, the container itself and what it stands in, and an
/// index out of range. What is refused changes nothing and posts a message. What is built follows at
/// once: a control that comes gets its widgets and its geometry, one that goes loses its widgets. Of
/// a launcher, the window of a dialog that goes is hidden.
///
/// The node-typed operations of the scene graph forward to the typed ones, so that a subclass
/// overrides each operation once.
template <class Base, class Child> class KsElementContainer : public Base {
public:
    // Each ends in `childrenChanged` or `childrenRemoved` if something changed.
    /// Behind the last.
    virtual void addChild(Child* child) { changedIf(m_elements.add(child)); }
    /// In front of the child at `index`; 0 to `getNumChildren`.
    virtual void insertChild(Child* child, int index)
    {
        changedIf(m_elements.insert(child, index));
    }
    /// Null with a message at or beyond the end, null without one for a negative index.
    virtual Child* getChild(int index) { return static_cast<Child*>(m_elements.get(index)); }
    virtual int getNumChildren() { return m_elements.count(); }
    /// Its index; -1 if it is none of the children, or null.
    virtual int findChild(const Child* child) { return m_elements.find(child); }
    // A child that only this container held dies with it.
    virtual void removeChild(Child* child) { removeChild(findChild(child)); }
    virtual void removeChild(int index)
    {
        if (m_elements.remove(index)) childrenRemoved();
    }
    virtual void removeAllChildren()
    {
        if (m_elements.removeAll()) childrenRemoved();
    }
    virtual void replaceChild(Child* oldChild, Child* newChild)
    {
        replaceChild(findChild(oldChild), newChild);
    }
    virtual void replaceChild(int index, Child* newChild)
    {
        changedIf(m_elements.replace(index, newChild));
    }
    /// From a file, up to the first thing that is no `Child`. FALSE at an error.
    virtual bool readChildren(KsInput* in)
    {
        return m_elements.read(
            in, [this](KsFormweave* child) { addChild(static_cast<Child*>(child)); });
    }

    const KsElementList* getElements() const override { return &m_elements; }
    bool isGroup() const override { return true; }
    bool readInstance(KsInput* in, unsigned short flags) override;
    void write(KsWriteAction* action) override { m_elements.write(action); }
    void search(KsSearchAction* action) override { m_elements.search(action); }
    void rayPick(KsRayPickAction* action) override { m_elements.rayPick(action); }

    void internalAddChild(KsNode* child) override
    {
        if (Child* mine = ksCast<Child>(child))
            addChild(mine);
        else if (child)
            Base::internalAddChild(child);
        else
            addChild(nullptr);
    }
    void internalInsertChild(KsNode* child, int index) override
    {
        if (Child* mine = ksCast<Child>(child))
            insertChild(mine, index);
        else if (child)
            Base::internalInsertChild(child, index);
        else
            insertChild(nullptr, index);
    }
    int internalFindChild(const KsNode* child) const override
    {
        const Child* mine = ksCast<Child>(child);
        return mine ? m_elements.find(mine) : Base::internalFindChild(child);
    }
    void internalReplaceChild(int index, KsNode* newChild) override
    {
        if (Child* mine = ksCast<Child>(newChild))
            replaceChild(index, mine);
        else
            Base::internalReplaceChild(index, newChild);
    }
    KsNode* internalGetChild(int index) const override { return m_elements.get(index); }
    void internalRemoveChild(KsNode* child) override { removeChild(ksCast<Child>(child)); }
    void internalRemoveChild(int index) override { removeChild(index); }
    void internalRemoveAllChildren() override { removeAllChildren(); }
    void internalReplaceChild(KsNode* oldChild, KsNode* newChild) override
    {
        replaceChild(ksCast<Child>(oldChild), ksCast<Child>(newChild));
    }

protected:
    explicit KsElementContainer(const KsElementListTraits& traits) : m_elements(this, traits) {}
    ~KsElementContainer() override { m_elements.orphanChildren(); }

    /// The child list changed, after the children were built or not.
    virtual void childrenChanged() {}
    /// Children went: the same, unless the class lets the others stand as they are.
    virtual void childrenRemoved() { childrenChanged(); }
    Child* childAt(int index) const { return static_cast<Child*>(m_elements.at(index)); }
    template <class Visit> void forEachChild(Visit&& visit) const
    {
        m_elements.forEach([&](KsFormweave* child) { visit(static_cast<Child*>(child)); });
    }
    void copyContents(const KsNode* from, KsNode::Copier& copier) override;

    KsElementList m_elements;

private:
    void changedIf(bool changed)
    {
        if (changed) childrenChanged();
    }
};

template <class Base, class Child>
bool KsElementContainer<Base, Child>::readInstance(KsInput* in, unsigned short flags)
{
    const bool notify = this->enableNotify(false);
    bool ok = Base::readInstance(in, flags);
    // In the binary form bit 2 of the flags tells that children follow.
    if (ok && (!ksIsBinary(in) || (flags & 2))) ok = readChildren(in);
    this->enableNotify(notify);
    return ok;
}

template <class Base, class Child>
void KsElementContainer<Base, Child>::copyContents(const KsNode* from, KsNode::Copier& copier)
{
    Base::copyContents(from, copier);
    m_elements.adoptCopies();
}

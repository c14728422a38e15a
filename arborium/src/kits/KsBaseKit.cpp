#include <arborium/kits/KsBaseKit.h>

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsSeparator.h>

#include <charconv>
#include <string>

KS_KIT_SOURCE(KsBaseKit, KsNode)

namespace {

constexpr int self = 0;         // the kit's own row
constexpr int topSeparator = 1; // its first part

bool s_searchingChildren = true;

KsNode* makeNode(KsType type)
{
    if (!type.isDerivedFrom(KsNode::getClassTypeId())) return nullptr;
    return static_cast<KsNode*>(type.createInstance());
}

} // namespace

/// What a kit knows of one of its parts.
struct KsBaseKit::Part {
    KsSFNode field;
    KsRef<KsNode> placed; // what stands in the structure for the field
    bool isShared = false;
};

/// Where a name leads.
struct KsBaseKit::Target {
    KsBaseKit* kit = nullptr;
    int row = -1;
    int item = -1; // of a list; -1 for the part itself
};

KsBaseKit::KsBaseKit() : m_children(this)
{
    KsInstanceBuilder build(classRecord, this);
    const KsType separator = KsSeparator::getClassTypeId();
    build.part("topSeparator", separator, "this", KsHiddenPart);
    build.part("geomSeparator", separator, "topSeparator", KsHiddenPart);
}

KsBaseKit::~KsBaseKit() = default;

void KsBaseKit::createNodekitPartsList() {}

void KsBaseKit::createDefaultParts()
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    if (!catalog || !catalog->hasDefaultParts()) return;
    for (int row = topSeparator; row < catalog->getNumEntries(); ++row)
        if (!catalog->isNullByDefault(row)) makePart(row);
}

void KsBaseKit::catalogError()
{
    KsDebugError::post("KsBaseKit::catalogError", "a part of the catalog of %s was refused",
                       getTypeId().getName().getString());
}

// Parts by their row.

KsBaseKit::Part* KsBaseKit::part(int row, bool make) const
{
    if (row <= self) return nullptr;
    const auto index = static_cast<std::size_t>(row);
    if (index < m_parts.size() && m_parts[index]) return m_parts[index].get();
    if (!make) return nullptr;
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    if (!catalog || row >= catalog->getNumEntries()) return nullptr;
    // A kit that is still under construction knows the rows of its base class only.
    if (index >= m_parts.size()) m_parts.resize(static_cast<std::size_t>(catalog->getNumEntries()));
    auto& made = m_parts[index];
    made = std::make_unique<Part>();
    auto* kit = const_cast<KsBaseKit*>(this);
    made->field.setPassive();
    made->field.setContainer(kit);
    made->field.setFieldType(5);
    kit->setValidatesFields();
    return made.get();
}

int KsBaseKit::rowOf(const KsField* field) const
{
    for (std::size_t row = topSeparator; row < m_parts.size(); ++row)
        if (m_parts[row] && &m_parts[row]->field == field) return static_cast<int>(row);
    return -1;
}

KsField* KsBaseKit::getPartField(int row, bool make) const
{
    Part* p = part(row, make);
    return p ? &p->field : nullptr;
}

KsNode* KsBaseKit::partAt(int row) const
{
    const Part* p = part(row, false);
    return p ? p->field.getValue() : nullptr;
}

bool KsBaseKit::isPartDefault(int row) const
{
    const Part* p = part(row, false);
    return !p || p->field.isDefault();
}

bool KsBaseKit::isPartShared(int row) const
{
    const Part* p = part(row, false);
    return p && p->isShared;
}

KsNode* KsBaseKit::makePart(int row)
{
    if (KsNode* node = partAt(row)) {
        restoreTopSeparator();
        return node;
    }
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    if (!catalog || row <= self || row >= catalog->getNumEntries()) return nullptr;
    KsRef<KsNode> node(makeNode(catalog->getDefaultType(row)));
    return node && setPartAt(row, node, true) ? node.get() : nullptr;
}

bool KsBaseKit::setPartAt(int row, KsNode* node, bool countsAsDefault, bool isShared)
{
    const KsKeepAlive alive(this);
    const KsRef<KsNode> keep(node);
    Part* p = part(row, true);
    if (!p) return false;
    restoreTopSeparator();
    if (node) siblingsOf(row, true);
    p->field.setValue(node); // puts the node in place, through `fieldHasChanged`
    // Listeners have run: they may have set the part again.
    if (p->field.getValue() != node) return false;
    p->field.setDefault(countsAsDefault);
    p->isShared = isShared && node;
    return true;
}

void KsBaseKit::restoreTopSeparator()
{
    const Part* top = part(topSeparator, false);
    if (top && top->placed && m_children.find(top->placed) < 0) m_children.append(top->placed);
}

bool KsBaseKit::validateNewFieldValue(KsField* field, const void* newValue)
{
    const int row = rowOf(field);
    if (row < 0) return KsNode::validateNewFieldValue(field, newValue);
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    const KsNode* node = *static_cast<KsNode* const*>(newValue);
    if (!catalog || !node) return true;
    const KsType type =
        catalog->isList(row) ? catalog->getListContainerType(row) : catalog->getType(row);
    if (node->isOfType(type)) return true;
    KsDebugError::post("KsBaseKit::setPart",
                       "a %s cannot be the part \"%s\" of a %s, which is a %s",
                       node->getTypeId().getName().getString(), catalog->getName(row).getString(),
                       getTypeId().getName().getString(), type.getName().getString());
    return false;
}

void KsBaseKit::fieldHasChanged(KsField* field)
{
    KsNode::fieldHasChanged(field);
    if (m_parts.empty()) return;
    const int row = rowOf(field);
    if (row < 0) return;
    part(row, false)->isShared = false;
    place(row);
}

/// The list in which the part stands; null if its parent does not exist and is not to be made.
KsChildList* KsBaseKit::siblingsOf(int row, bool make)
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    const int parent = catalog ? catalog->getParent(row) : -1;
    if (parent == self) return &m_children;
    KsNode* node = make ? makePart(parent) : partAt(parent);
    return node ? node->getChildren() : nullptr;
}

/// The index of a part's node. A node may stand for several parts below the same parent: then it
/// is the one that comes in their order.
int KsBaseKit::findPlaced(const KsChildList& list, int row, const KsNode* node) const
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    int skip = 0;
    for (const int sibling : catalog->getChildrenInOrder(catalog->getParent(row))) {
        if (sibling == row) break;
        const Part* p = part(sibling, false);
        if (p && p->placed.get() == node) ++skip;
    }
    for (int i = 0; i < list.getLength(); ++i)
        if (list[i] == node && skip-- == 0) return i;
    return -1;
}

/// Whether the list holds the node more often than the other parts below this parent account for.
bool KsBaseKit::isPresent(const KsChildList& list, int row, const KsNode* node) const
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    int surplus = 0;
    for (int i = 0; i < list.getLength(); ++i)
        if (list[i] == node) ++surplus;
    for (const int sibling : catalog->getChildrenInOrder(catalog->getParent(row))) {
        const Part* p = part(sibling, false);
        if (sibling != row && p && p->placed.get() == node) --surplus;
    }
    return surplus > 0;
}

/// Where a part that is not there yet belongs: before the first later sibling that exists.
int KsBaseKit::placeFor(const KsChildList& list, int row) const
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    const int parent = catalog->getParent(row);
    bool later = false;
    for (const int sibling : catalog->getChildrenInOrder(parent)) {
        if (later) {
            const Part* p = part(sibling, false);
            const int index = p && p->placed ? findPlaced(list, sibling, p->placed) : -1;
            if (index >= 0) return index;
        }
        later = later || sibling == row;
    }
    const Part* top = parent == self && row != topSeparator ? part(topSeparator, false) : nullptr;
    const int index = top && top->placed ? list.find(top->placed) : -1;
    return index >= 0 ? index : list.getLength();
}

/// Brings the structure in line with the part's field, or, where that cannot be, the field with the
/// structure.
void KsBaseKit::place(int row)
{
    Part* p = part(row, false);
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    if (!p) return;
    if (!catalog) { // the class is gone
        p->field.initValue(p->placed);
        return;
    }
    const KsRef<KsNode> node(p->field.getValue());
    const KsRef<KsNode> old(p->placed);
    KsChildList* list = siblingsOf(row, node);
    const KsRef<KsNode> keepParent(partAt(catalog->getParent(row)));
    const int oldIndex = list && old ? findPlaced(*list, row, old) : -1;
    const bool isNew = list && node && (node != old || oldIndex < 0);
    // What was read from a file may hold the node already.
    const bool isThere = isNew && isPresent(*list, row, node);
    const int index = !list || oldIndex >= 0 ? oldIndex : placeFor(*list, row);
    p->placed = list ? node : nullptr;
    if (node && !list) {
        KsDebugError::post("KsBaseKit::setPart", "the parent of the part \"%s\" cannot be made",
                           catalog->getName(row).getString());
    } else if (!node || isThere) {
        if (oldIndex >= 0) list->remove(oldIndex);
    } else if (isNew && oldIndex < 0) {
        list->insert(node, index);
    } else if (isNew) {
        list->set(index, node);
    }
    // Sensors have run: one of them may have set the part again, and put that in place.
    if (list && p->placed.get() != node.get()) return;
    if (p->placed && list->find(node) < 0) {
        p->placed = nullptr;
        if (oldIndex >= 0 && (*list)[oldIndex] == old) list->remove(oldIndex);
    }
    if (p->field.getValue() != p->placed.get()) p->field.initValue(p->placed);
    if (old == node) return;
    // The parts below go along.
    for (const int child : catalog->getChildrenInOrder(row)) {
        Part* below = part(child, false);
        if (!below || !below->placed) continue;
        if (p->placed) {
            place(child);
        } else {
            below->field.setValue(nullptr);
            below->field.setDefault(true);
        }
    }
}

// Parts by their name.

bool KsBaseKit::resolve(std::string_view name, bool make, bool publicOnly, const char* where,
                        Target& target)
{
    const std::size_t dot = name.find('.');
    std::string_view head = name.substr(0, dot);
    int item = -1;
    if (const std::size_t open = head.find('['); open != head.npos) {
        const char* end = head.data() + head.size();
        const auto [stop, error] = std::from_chars(head.data() + open + 1, end, item);
        if (error != std::errc() || item < 0 || stop + 1 != end || *stop != ']') {
            KsDebugError::post(where, "\"%s\" is no name of a part", std::string(name).c_str());
            return false;
        }
        head = head.substr(0, open);
    }
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    const int row = catalog ? catalog->getPartNumber(KbName::findExisting(head)) : -1;
    const char* wrong = nullptr;
    if (row <= self)
        wrong = "\"%s\" is no part of a %s";
    else if (publicOnly && !catalog->isPublic(row))
        wrong = "\"%s\" is a hidden part of a %s";
    else if (item >= 0 && !catalog->isList(row))
        wrong = "\"%s\" is no list of a %s";
    if (wrong) {
        std::string text(wrong);
        text.replace(text.find("%s"), 2, head);
        text.replace(text.rfind("%s"), 2, getTypeId().getName().view());
        KsDebugError::post(where, "%s", text.c_str());
        return false;
    }
    target = {this, row, item};
    if (dot == name.npos) return true;

    KsNode* inner = targetNode(target, make);
    if (!inner) {
        target.kit = nullptr;
        return true; // nothing there, and nothing wrong
    }
    auto* kit = ksCast<KsBaseKit>(inner);
    if (!kit) {
        KsDebugError::post(where, "\"%s\" is no kit", std::string(head).c_str());
        return false;
    }
    return kit->resolve(name.substr(dot + 1), make, publicOnly, where, target);
}

KsNode* KsBaseKit::targetNode(const Target& target, bool make)
{
    if (!target.kit) return nullptr;
    KsNode* node = make ? target.kit->makePart(target.row) : target.kit->partAt(target.row);
    if (!node || target.item < 0) return node;
    KsChildList* items = node->getChildren();
    if (make && target.item == items->getLength())
        if (KsNode* item = makeNode(target.kit->getNodekitCatalog()->getListItemType(target.row)))
            items->append(item);
    return (*items)[target.item];
}

KsNode* KsBaseKit::getNamed(const KbName& name, bool make, bool publicOnly, const char* where)
{
    Target target;
    return resolve(name.view(), make, publicOnly, where, target) ? targetNode(target, make)
                                                                 : nullptr;
}

bool KsBaseKit::setNamed(const KbName& name, KsNode* node, bool publicOnly, const char* where)
{
    const KsRef<KsNode> keep(node);
    Target target;
    if (!resolve(name.view(), node, publicOnly, where, target)) return false;
    if (!target.kit) {
        if (node) KsDebugError::post(where, "what \"%s\" lies in cannot be made", name.getString());
        return !node; // what is not there need not be removed
    }
    if (target.item < 0) return target.kit->setPartAt(target.row, node, false);

    KsNode* list = node ? target.kit->makePart(target.row) : target.kit->partAt(target.row);
    if (!list) return !node;
    const KsType itemType = target.kit->getNodekitCatalog()->getListItemType(target.row);
    if (node && !node->isOfType(itemType)) {
        KsDebugError::post(where, "a %s cannot be an item of \"%s\"",
                           node->getTypeId().getName().getString(), name.getString());
        return false;
    }
    KsChildList* items = list->getChildren();
    if (target.item > items->getLength()) {
        KsDebugError::post(where, "\"%s\" lies behind the end of the list", name.getString());
        return false;
    }
    if (!node) {
        if (target.item < items->getLength()) items->remove(target.item);
    } else if (target.item == items->getLength()) {
        items->append(node);
    } else {
        items->set(target.item, node);
    }
    static_cast<Part*>(target.kit->part(target.row, true))->field.setDefault(false);
    return true;
}

KsNode* KsBaseKit::getPart(const KbName& name, bool makeIfNeeded)
{
    return getNamed(name, makeIfNeeded, true, "KsBaseKit::getPart");
}

bool KsBaseKit::setPart(const KbName& name, KsNode* node)
{
    return setNamed(name, node, true, "KsBaseKit::setPart");
}

KsNode* KsBaseKit::getAnyPart(const KbName& name, bool makeIfNeeded)
{
    return getNamed(name, makeIfNeeded, false, "KsBaseKit::getAnyPart");
}

bool KsBaseKit::setAnyPart(const KbName& name, KsNode* node)
{
    return setNamed(name, node, false, "KsBaseKit::setAnyPart");
}

KbString KsBaseKit::getPartString(const KsNode* node)
{
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    if (!catalog || !node) return {};
    for (int row = topSeparator; row < static_cast<int>(m_parts.size()); ++row) {
        KsNode* present = partAt(row);
        if (!present) continue;
        const std::string name(catalog->getName(row).view());
        if (present == node) return name;
        if (auto* inner = ksCast<KsBaseKit>(present)) {
            const KbString rest = inner->getPartString(node);
            if (!rest.isEmpty()) return KbString(name + ".") + rest;
        }
        if (!catalog->isList(row)) continue;
        const KsChildList& items = *present->getChildren();
        for (int i = 0; i < items.getLength(); ++i) {
            const std::string itemName = name + "[" + std::to_string(i) + "]";
            if (items[i] == node) return itemName;
            auto* inner = ksCast<KsBaseKit>(items[i]);
            const KbString rest = inner ? inner->getPartString(node) : KbString();
            if (!rest.isEmpty()) return KbString(itemName + ".") + rest;
        }
    }
    return {};
}

KsPath* KsBaseKit::createPathToPart(const KbName& name, bool makeIfNeeded,
                                    const KsPath* pathToExtend)
{
    KsRef<KsNode> node(getNamed(name, makeIfNeeded, false, "KsBaseKit::createPathToPart"));
    if (!node) return nullptr;
    KsPath path;
    if (pathToExtend) path = *pathToExtend;
    path.setNumPublic(-1);
    const int index = path.findNode(this);
    if (index >= 0)
        path.truncate(index + 1);
    else if (!pathToExtend)
        path.setHead(this);
    else if (!path.append(this)) {
        KsDebugError::post("KsBaseKit::createPathToPart", "the path does not lead to the kit");
        return nullptr;
    }
    // From kit to kit by the parts of the name, in each from the top part down.
    KsBaseKit* kit = this;
    std::string_view rest = name.view();
    while (kit) {
        const std::size_t dot = rest.find('.');
        Target target;
        if (!kit->resolve(rest.substr(0, dot), false, false, "KsBaseKit::createPathToPart", target))
            return nullptr;
        std::vector<KsNode*> chain;
        for (int row = target.row; row > self; row = kit->getNodekitCatalog()->getParent(row))
            chain.insert(chain.begin(), kit->partAt(row));
        if (target.item >= 0 && chain.back()) {
            KsNode* item = (*chain.back()->getChildren())[target.item];
            chain.push_back(item);
        }
        for (KsNode* step : chain)
            if (!step || !path.append(step)) return nullptr; // taken out by hand
        if (dot == rest.npos) break;
        kit = ksCast<KsBaseKit>(chain.back());
        rest = rest.substr(dot + 1);
    }
    return path.copy();
}

// Traversal.

void KsBaseKit::doAction(KsAction* action) { m_children.traverseInPath(action); }

void KsBaseKit::getBoundingBox(KsGetBoundingBoxAction* action) { KsBaseKit::doAction(action); }

void KsBaseKit::getMatrix(KsGetMatrixAction* action)
{
    // Nothing in a kit places what stands behind it.
    int count = 0;
    const int* indices = nullptr;
    if (action->getPathCode(count, indices) == KsAction::IN_PATH && count > 0)
        KsBaseKit::doAction(action);
}

void KsBaseKit::handleEvent(KsHandleEventAction* action) { KsBaseKit::doAction(action); }

void KsBaseKit::rayPick(KsRayPickAction* action)
{
    const int before = countPickedPoints(action);
    KsBaseKit::doAction(action);
    addKitDetails(action, KsBaseKit::getClassTypeId(), before);
}

void KsBaseKit::search(KsSearchAction* action)
{
    KsNode::search(action);
    if (action->isFound() || (!s_searchingChildren && !action->isSearchingAll())) return;
    KsBaseKit::doAction(action);
    cutToLastKit(action, KsBaseKit::getClassTypeId());
}

bool KsBaseKit::isSearchingChildren() { return s_searchingChildren; }
void KsBaseKit::setSearchingChildren(bool searching) { s_searchingChildren = searching; }

namespace {

/// The index of the last node of this type on the whole path; -1 if there is none.
int findLast(const KsPath& path, KsType type)
{
    int last = -1;
    for (int i = 0; const KsNode* node = path.getNode(i); ++i)
        if (node->isOfType(type)) last = i;
    return last;
}

} // namespace

void KsBaseKit::cutToLastKit(KsPath* path, KsType kitType)
{
    const int last = path ? findLast(*path, kitType) : -1;
    if (last >= 0) path->setNumPublic(last + 1);
}

void KsBaseKit::cutToLastKit(KsSearchAction* action, KsType kitType)
{
    if (action->getInterest() == KsSearchAction::ALL) {
        const KsPathList& paths = action->getPaths();
        for (int i = 0; i < paths.getLength(); ++i) cutToLastKit(paths[i], kitType);
    } else {
        cutToLastKit(action->getPath(), kitType);
    }
}

int KsBaseKit::countPickedPoints(const KsRayPickAction* action)
{
    // Without "pick all" there is one point, which the children may replace.
    return action->isPickAll() ? action->getPickedPointsListLength() : 0;
}

void KsBaseKit::addKitDetails(KsRayPickAction* action, KsType kitType, int firstPoint)
{
    for (int i = firstPoint; KsPickedPoint* point = action->getUnsortedPickedPoint(i); ++i) {
        KsPath* path = point->getPath();
        const int last = path ? findLast(*path, kitType) : -1;
        if (last < 0) continue;
        path->setNumPublic(last + 1);
        KsNode* node = path->getNode(last);
        if (point->getDetail(node)) continue;
        auto* detail = new KsNodeKitDetail;
        detail->setNodeKit(node);
        const auto* kit = ksCast<KsBaseKit>(static_cast<const KsNode*>(node));
        const KsNodekitCatalog* catalog = kit ? kit->getNodekitCatalog() : nullptr;
        int end = last + 1;
        while (path->getNode(end)) ++end;
        for (int step = end - 1; catalog && step > last && !detail->getPart(); --step) {
            KsNode* below = path->getNode(step);
            const KsNode* above = path->getNode(step - 1);
            for (int row = topSeparator; row < static_cast<int>(kit->m_parts.size()); ++row) {
                // A shared node can be several parts: its parent tells which one is meant.
                const int parent = catalog->getParent(row);
                if (!catalog->isPublic(row) || kit->partAt(row) != below ||
                    (parent == self ? above != node : above != kit->partAt(parent)))
                    continue;
                detail->setPart(below);
                detail->setPartName(catalog->getName(row));
                break;
            }
        }
        point->setDetail(detail, node);
        if (!action->isPickAll()) break;
    }
}

// Files.

bool KsBaseKit::isPartWritten(int row) const
{
    const Part* p = part(row, false);
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    if (!p) return false;
    const bool isSet = !p->field.isDefault();
    if (!p->placed || !catalog) return isSet;
    // What was taken out of its place by hand is no part; the kit may stand below it by now.
    const int above = catalog->getParent(row);
    const KsNode* parent = partAt(above);
    const KsChildList* list = above <= self ? &m_children
                              : parent      ? parent->getChildren()
                                            : nullptr;
    if (!list || list->find(p->placed) < 0) return false;
    if (isSet) return true;
    // A part that was set takes along what stands in it. The parts in it are written with it, or
    // reading would make them once more.
    for (int outer = above; outer > self; outer = catalog->getParent(outer))
        if (!isPartDefault(outer)) return true;
    return isPartChanged(row, 16);
}

bool KsBaseKit::isPartChanged(int row, int kitsWithin) const
{
    const KsNode* node = partAt(row);
    if (!node || !copiesStructure() || isPartShared(row)) return false;
    const KsNodekitCatalog* catalog = getNodekitCatalog();
    // A part that holds others would bring them along a second time.
    if (!catalog->isPublic(row) || !catalog->getChildrenInOrder(row).empty()) return false;
    if (!node->getName().isEmpty() || !node->hasDefaultValues()) return true;
    if (const auto* kit = ksCast<KsBaseKit>(node)) {
        if (kitsWithin == 0) return true; // who nests so deeply means it
        for (int i = topSeparator; i < static_cast<int>(kit->m_parts.size()); ++i)
            if (kit->isPartChanged(i, kitsWithin - 1)) return true;
        return false;
    }
    const KsChildList* children = node->getChildren();
    return children && children->getLength() > 0;
}

void KsBaseKit::writeFields(KsWriteAction* action)
{
    if (const KsFieldData* fields = getFieldData()) fields->write(action->getOutput(), this);
}

void KsBaseKit::write(KsWriteAction* action)
{
    KsOutput* out = action->getOutput();
    if (out->getStage() == KsOutput::COUNT_REFS) {
        addWriteReference(out);
        if (!hasMultipleWriteRefs(out)) writeFields(action);
    } else if (!writeHeader(out, false)) {
        writeFields(action);
        endWrite(action);
    }
}

void KsBaseKit::endWrite(KsWriteAction* action) { writeFooter(action->getOutput()); }

// Copies.

void KsBaseKit::copyContents(const KsNode* from, Copier& copier)
{
    KsNode::copyContents(from, copier);
    const auto& kit = *static_cast<const KsBaseKit*>(from);
    const bool all = copiesStructure();
    const int rows = static_cast<int>(kit.m_parts.size());
    if (all) { // in place of what the constructor has made
        m_children.truncate(0);
        for (const auto& made : m_parts) {
            if (!made) continue;
            made->placed.reset();
            made->field.initValue(nullptr);
        }
    }
    for (int row = topSeparator; row < rows; ++row)
        if (kit.isPartShared(row)) copier.keep(kit.partAt(row));
    const KsNode* top = kit.partAt(topSeparator);
    for (int i = 0; i < kit.m_children.getLength(); ++i)
        if (all || kit.m_children[i] != top)
            if (KsNode* child = copier.copyOf(kit.m_children[i])) m_children.append(child);
    for (int row = topSeparator; row < rows; ++row) {
        const Part* original = kit.part(row, false);
        if (!original) continue;
        KsNode* node = copier.copyOf(original->field.getValue());
        if (!all) {
            if (!original->field.isDefault()) setPartAt(row, node, false);
            continue;
        }
        // The nodes have their places already.
        Part* p = part(row, true);
        if (!p) continue;
        p->field.initValue(node);
        p->field.setDefault(original->field.isDefault());
        p->placed = original->placed ? node : nullptr;
        p->isShared = original->isShared;
    }
}

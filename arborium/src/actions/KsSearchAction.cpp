#include <arborium/actions/KsSearchAction.h>

#include <arborium/nodes/KsNode.h>

KsSearchAction::KsSearchAction() = default;

KsType KsSearchAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "SearchAction");
    return type;
}

void KsSearchAction::setType(KsType type, bool derivedIsOk)
{
    m_byType = true;
    m_type = type;
    m_derivedIsOk = derivedIsOk;
}

void KsSearchAction::setName(const KbName& name)
{
    m_byName = true;
    m_name = name;
}

void KsSearchAction::setNode(KsNode* node) { m_node = node; }

void KsSearchAction::reset()
{
    m_interest = FIRST;
    m_searchingAll = false;
    m_found = false;
    m_byType = false;
    m_byName = false;
    m_derivedIsOk = true;
    m_type = KsType();
    m_name = KbName();
    m_node = nullptr;
    m_path.reset();
    m_paths.truncate(0);
}

bool KsSearchAction::matches(const KsNode* node) const
{
    if (!node || !(m_byType || m_byName || m_node)) return false;
    if (m_node && node != m_node) return false;
    if (m_byName && node->getName() != m_name) return false;
    if (m_byType && !(m_derivedIsOk ? node->isOfType(m_type) : node->getTypeId() == m_type))
        return false;
    return true;
}

void KsSearchAction::addMatch()
{
    if (m_found || getPathCode() == OFF_PATH) return;
    KsPath* path = new KsFullPath(*getCurPath());
    if (m_interest == ALL) {
        m_paths.append(path);
        return;
    }
    m_path = path;
    if (m_interest != FIRST) return;
    m_found = true;
    terminate();
}

void KsSearchAction::apply(const KsPathList& paths)
{
    KsRef<KsPath> match;
    KsPathList matches;
    for (int i = 0; i < paths.getLength(); ++i) {
        const KsRef<KsPath> path(paths[i]); // the list may change meanwhile
        if (!path) continue;
        apply(path.get());
        for (int k = 0; k < m_paths.getLength(); ++k) matches.append(m_paths[k]);
        if (m_path) match = m_path;
        if (m_found && m_interest == FIRST) break;
    }
    m_path = match;
    m_paths = matches;
    m_found = m_path || m_paths.getLength() > 0;
}

void KsSearchAction::beginTraversal(KsNode* root)
{
    m_found = false;
    m_path.reset();
    m_paths.truncate(0);
    KsAction::beginTraversal(root);
    m_found = m_path || m_paths.getLength() > 0;
}

void KsSearchAction::visit(KsNode* node)
{
    if (!m_found) node->search(this);
}

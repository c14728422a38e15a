#include <arborium/actions/KsDetail.h>

#include <arborium/nodes/KsNode.h>

KsType KsDetail::getClassTypeId()
{
    static const KsType type = KsType::createType(KsTypedObject::getClassTypeId(), "Detail");
    return type;
}

KsNodeKitDetail::KsNodeKitDetail() = default;
KsNodeKitDetail::~KsNodeKitDetail() = default;

KsType KsNodeKitDetail::getClassTypeId()
{
    static const KsType type = KsType::createType(KsDetail::getClassTypeId(), "NodeKitDetail");
    return type;
}

KsDetail* KsNodeKitDetail::copy() const
{
    auto* result = new KsNodeKitDetail;
    result->m_kit = m_kit;
    result->m_part = m_part;
    result->m_partName = m_partName;
    return result;
}

void KsNodeKitDetail::setNodeKit(KsNode* kit) { m_kit = kit; }

void KsNodeKitDetail::setPart(KsNode* part) { m_part = part; }

#pragma once

#include <arborium/base/KbName.h>
#include <arborium/base/KsRefCounter.h>
#include <arborium/base/KsTypedObject.h>

class KsNode;

/// What a node knows about a hit on it.
class ARBORIUM_API KsDetail : public KsTypedObject {
public:
    static KsType getClassTypeId();
    /// A new one with the same content; the caller owns it.
    virtual KsDetail* copy() const = 0;
};

/// Which part of a kit was hit.
class ARBORIUM_API KsNodeKitDetail : public KsDetail {
public:
    KsNodeKitDetail();
    ~KsNodeKitDetail() override;
    static KsType getClassTypeId();
    KsType getTypeId() const override { return getClassTypeId(); }
    KsDetail* copy() const override;

    // The kit and its part are kept alive by the detail; null is allowed.
    void setNodeKit(KsNode* kit);
    void setPart(KsNode* part);
    void setPartName(const KbName& name) { m_partName = name; }
    /// Null in a new detail.
    KsNode* getNodeKit() const { return m_kit.get(); }
    /// Null if no public part was hit.
    KsNode* getPart() const { return m_part.get(); }
    /// In the kit's own catalog. Empty if no public part was hit.
    const KbName& getPartName() const { return m_partName; }

private:
    KsRef<KsNode> m_kit;
    KsRef<KsNode> m_part;
    KbName m_partName;
};

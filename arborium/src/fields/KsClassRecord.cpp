#include <arborium/fields/KsClassRecord.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/kits/KsBaseKit.h>
#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsNode.h>

#include <cstring>
#include <string>

const char* KsClassRecord::fileName() const
{
    return std::strncmp(className, "Ks", 2) == 0 ? className + 2 : className;
}

void KsClassRecord::initClass()
{
    {
        const KbThreadAutoLock lock(classMutex);
        if (!classTypeId.isBad()) return;
    }
    // The lock is not held here: the parent may come back to this class.
    if (parentRecord && parentRecord->classTypeId.isBad()) {
        KsDebugError::post((std::string(className) + "::initClass").c_str(),
                           "%s initialized before parent class %s\n", className,
                           parentRecord->className);
        parentRecord->initClass();
    }
    {
        const KbThreadAutoLock lock(classMutex);
        const KsType parent =
            parentRecord ? parentRecord->classTypeId : KsFieldContainer::getClassTypeId();
        classTypeId =
            KsType::createType(parent, fileName(), createFunction,
                               static_cast<std::uint16_t>(KsNode::getNextActionMethodIndex()));
        if (parentRecord) {
            if (!parentFieldData) KsNode::incNextActionMethodIndex();
            parentFieldData = const_cast<const KsFieldData**>(&parentRecord->fieldData);
        }
        isKit = this == &KsBaseKit::classRecord || (parentRecord && parentRecord->isKit);
    }
    if (isKit && parentRecord)
        parentNodekitCatalogPtr =
            const_cast<const KsNodekitCatalog**>(&parentRecord->nodekitCatalog);
}

void KsClassRecord::exitClass()
{
    if (KsType::removeType(fileName()) == 0) {
        KsDebugError::post((std::string(className) + "::exitClass").c_str(),
                           "Unable to remove type (%s) for this class. Check exitClass() method is "
                           "implemented and is called only once.\n",
                           fileName());
    } else {
        m_isSettled = false;
        classTypeId = KsType::badType();
        delete fieldData;
        fieldData = nullptr;
        m_isRepaired = false;
        parentFieldData = nullptr;
        firstInstance = 1;
    }
    delete nodekitCatalog;
    nodekitCatalog = nullptr;
}

void KsClassRecord::makeFieldData()
{
    if (!fieldData) fieldData = new KsFieldData(parentFieldData ? *parentFieldData : nullptr);
}

namespace {
void postNotConstructed(const char* className)
{
    KsDebugError::post(className,
                       "Instance not properly constructed.\n"
                       "Did you forget to put KS_NODE_CONSTRUCTOR() in the constructor?");
}
} // namespace

const KsFieldData* KsClassRecord::lockFieldData()
{
    const KbThreadAutoLock lock(classMutex);
    if (!fieldData) {
        postNotConstructed(className);
        makeFieldData();
        m_isRepaired = true;
    }
    return fieldData;
}

// ---- instances -----------------------------------------------------------------------------

void KsInstanceBuilder::prepareRecord()
{
    KsClassRecord& record = m_record;
    if (record.classTypeId.isBad()) {
        KsDebugError::post("KS_NODE_CONSTRUCTOR",
                           "Can't construct a node of type %s until initClass() has been called",
                           record.className);
        record.initClass();
        // Its parts are of the layer's own classes.
        KsNode::initClasses();
    }
    {
        const KbThreadAutoLock lock(record.classMutex);
        if (!record.fieldData)
            record.makeFieldData();
        else if (record.m_isRepaired)
            record.fieldData->inherit(record.parentFieldData ? *record.parentFieldData : nullptr);
        else
            record.firstInstance = 0;
        record.m_isRepaired = false;
        m_first = record.firstInstance != 0;
        record.m_isSettled = !m_first;
    }
    if (m_first) {
        KsTypedObject::checkDatabase(record.className, m_instance, record.classTypeId,
                                     record.classTypeId);
        if (record.isKit) {
            const KsNodekitCatalog* parent =
                record.parentNodekitCatalogPtr ? *record.parentNodekitCatalogPtr : nullptr;
            delete record.nodekitCatalog;
            record.nodekitCatalog = parent ? parent->clone(record.classTypeId)
                                           : KsNodekitCatalog().clone(record.classTypeId);
        }
    }
    record.isBuiltIn = 1;
}

void KsInstanceBuilder::makeParts()
{
    auto* kit = static_cast<KsBaseKit*>(m_instance);
    kit->createNodekitPartsList();
    kit->createDefaultParts();
}

void KsInstanceBuilder::addToRecord(const char* name, KsField& member)
{
    const KbThreadAutoLock lock(m_record.classMutex);
    if (!m_record.fieldData) {
        postNotConstructed(m_record.className);
        m_record.makeFieldData();
    }
    if (!m_first) return;
    if (m_record.fieldData->getIndex(name) >= 0) {
        KsDebugError::post("KsInstanceBuilder::field",
                           "%s has a field \"%s\" already: this one is in no file",
                           m_record.className, name);
    }
    m_record.fieldData->addField(m_instance, name, &member);
}

void KsInstanceBuilder::enums(const char* enumName, std::initializer_list<KsEnumValue> values)
{
    if (!m_first) return;
    const KbThreadAutoLock lock(m_record.classMutex);
    if (!m_record.fieldData) {
        postNotConstructed(m_record.className);
        m_record.makeFieldData();
    }
    for (const KsEnumValue& each : values)
        m_record.fieldData->addEnumValue(enumName, each.name, each.value);
}

void KsInstanceBuilder::enumField(const char* name, KsSFEnum& member, const char* enumName,
                                  int initial, const char* file, int line)
{
    add(name, member);
    if (m_first) {
        const KsEnumData* enums = m_record.fieldData->getEnumData(KbName(enumName));
        if (!enums) {
            KsDebugError::post("KS_SET_SF_ENUM_TYPE",
                               "Field %s (%s, line %d): Did you forget to use "
                               "KS_%s_DEFINE_ENUM_VALUE(%s, ...)?",
                               name, file, line, m_record.isKit ? "KIT" : "NODE", enumName);
        }
        m_record.fieldData->addEnumField(enums);
    }
    if (m_enumField < 0) {
        const KsFieldData* parent = m_record.parentFieldData ? *m_record.parentFieldData : nullptr;
        m_enumField = parent ? parent->getNumEnumFields() : 0;
    }
    member.setEnums(m_record.fieldData->getFieldEnum(m_enumField++));
    member.initValue(initial);
}

void KsInstanceBuilder::part(const char* name, KsType type, const char* parent, bool isPublic,
                             bool nullByDefault, const char* rightSibling)
{
    part(name, type, type, nullByDefault, parent, rightSibling, false, KsType::badType(),
         KsType::badType(), isPublic);
}

void KsInstanceBuilder::part(const char* name, KsType type, KsType defaultType, bool nullByDefault,
                             const char* parent, const char* rightSibling, bool isList,
                             KsType listContainer, KsType listItem, bool isPublic)
{
    if (!m_first || !m_record.isKit || !m_record.nodekitCatalog) return;
    if (!m_record.nodekitCatalog->addEntry(name, type, defaultType, nullByDefault, parent,
                                           rightSibling, isList, listContainer, listItem,
                                           isPublic)) {
        static_cast<KsBaseKit*>(m_instance)->catalogError();
        return;
    }
    const KbThreadAutoLock lock(m_record.classMutex);
    if (!m_record.fieldData) {
        postNotConstructed(m_record.className);
        m_record.makeFieldData();
    }
    m_record.fieldData->addPartField(name, m_record.nodekitCatalog->getPartNumber(name));
}

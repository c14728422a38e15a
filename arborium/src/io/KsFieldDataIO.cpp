// The fields of an object in files: "name value" each, with "= Node.field" behind the value of a
// connected one.

#include "io/KsInputImpl.h"
#include "io/KsOutputImpl.h"

#include <arborium/base/KsLimits.h>
#include <arborium/kits/KsBaseKit.h>

#include <cstring>
#include <utility>

namespace {

using Impl = KsInput::Impl;

std::string typeName(const KsFieldContainer* container)
{
    return container->getTypeId().getName().getString();
}

/// For the time of one value, errors name the field.
class PresentField {
public:
    PresentField(Impl& in, const KbName& name, const KsFieldContainer* container) : m_in(in)
    {
        in.fieldName = name;
        in.fieldOwner = container->getTypeId();
    }
    ~PresentField()
    {
        m_in.fieldName = KbName();
        m_in.nodeType = KsType();
    }
    PresentField(const PresentField&) = delete;
    PresentField& operator=(const PresentField&) = delete;

private:
    Impl& m_in;
};

/// The name of a field in its container; empty if it is not one of its fields.
KbName nameOf(const KsField* field)
{
    const KsFieldContainer* container = field->getContainer();
    const KsFieldData* data = container ? container->getFieldData() : nullptr;
    for (int i = 0; data && i < data->getNumFields(); ++i)
        if (data->getField(container, i, false) == field) return data->getFieldName(i);
    return {};
}

/// The field that a written field takes its values from; null if files do not hold the connection.
KsField* writtenMaster(const KsField* field)
{
    KsField* master = field->isConnectionPrivate() ? nullptr : field->getConnectedField();
    return master && !nameOf(master).isEmpty() ? master : nullptr;
}

/// The type of the nodes that a kit takes for a part; the bad type for other containers.
KsType partType(KsFieldContainer* container, int part)
{
    auto* kit = part < 0 ? nullptr : ksCast<KsBaseKit>(container);
    const KsNodekitCatalog* catalog = kit ? kit->getNodekitCatalog() : nullptr;
    if (!catalog) return KsType::badType();
    return catalog->isList(part) ? catalog->getListContainerType(part) : catalog->getType(part);
}

void readConnection(Impl& im, KsFieldContainer* container, KsField* field)
{
    Impl::Key key;
    Impl::Connection connection;
    im.skipBlanks();
    connection.at = im.cur;
    if (!im.readKey(key, connection.masterField, true)) {
        if (!im.stopped) im.take(im.wordAt(im.cur));
        return;
    }
    connection.container = container;
    connection.field = field;
    connection.master = key.toString();
    im.connections.push_back(std::move(connection));
}

} // namespace

bool KsFieldData::read(KsInput* in, KsFieldContainer* container) const
{
    if (!in || !container) return false;
    Impl& im = in->impl();
    const auto readField = [&](int index) {
        const Entry& entry = m_entries[static_cast<std::size_t>(index)];
        KsField* field = getField(container, index, true);
        if (!field) {
            im.error("the field " + im.quote(entry.name.view()) + " of " + typeName(container) +
                     " cannot be made");
            return false;
        }
        const PresentField present(im, entry.name, container);
        im.nodeType = partType(container, entry.part);
        return field->readValue(in);
    };

    if (im.binary) {
        std::int32_t count;
        // A field takes at least its name and the mark of its connection.
        if (!in->readCount(count, 6, getNumFields())) return false;
        int next = 0; // most fields stand where the class has them
        for (int i = 0; i < count; ++i) {
            std::string_view name;
            if (!im.readBinaryText(name, KsLimits::current().nameBytes, "a field name"))
                return false;
            const bool isNext = next < getNumFields() && getFieldName(next).view() == name;
            const int index = isNext ? next : getIndex(im.knownName(name));
            if (index < 0) {
                KsNearestName nearest(im, name);
                for (const Entry& each : m_entries) nearest.offer(each.name.view());
                return im.binaryError("unknown field " + im.quote(name) + " of " +
                                      typeName(container) + nearest.hint());
            }
            unsigned short isConnected = 0;
            if (!readField(index) || !in->read(isConnected)) return false;
            next = index + 1;
            if (!isConnected) continue;
            Impl::Key key;
            Impl::Connection connection;
            connection.at = im.cur;
            std::string_view master;
            if (!im.readBinaryKey(key) ||
                !im.readBinaryText(master, KsLimits::current().nameBytes, "a field name"))
                return false;
            connection.masterField = master;
            connection.container = container;
            connection.field = getField(container, index, true);
            connection.master = key.toString();
            im.connections.push_back(std::move(connection));
        }
        return true;
    }

    for (;;) {
        if (im.stopped) return false;
        im.skipBlanks();
        if (im.atEnd() || *im.cur == '}') return true;
        const std::string_view word = im.peekWord();
        if (word.empty() || !Impl::is(word[0], Impl::Letter)) {
            im.error("met " + im.describeNext() + ", expected a field of " + typeName(container) +
                     " or '}'");
            if (word.empty() || Impl::looksNumeric(word))
                im.skipValue(this);
            else
                im.take(word);
            continue;
        }
        const KbName name = im.knownName(word);
        const int index = name.isEmpty() ? -1 : getIndex(name);
        if (index < 0) {
            if (im.beginsNode(word)) return true;
            KsNearestName nearest(im, word);
            for (const Entry& each : m_entries) nearest.offer(each.name.view());
            im.error("unknown field " + im.quote(word) + " of " + typeName(container) +
                     nearest.hint());
            im.take(word);
            im.skipValue(this);
            continue;
        }
        im.take(word);
        const char* const value = im.behindBlanks(im.cur);
        if (!readField(index)) {
            // What was wrong within a node was read over already.
            if (im.cur == value || !Impl::is(*value, Impl::Letter)) im.skipValue(this);
            continue;
        }
        im.skipBlanks();
        if (!im.atEnd() && *im.cur == '=') {
            ++im.cur;
            readConnection(im, container, getField(container, index, true));
        }
    }
}

bool KsFieldData::isDefault(const KsFieldContainer* container, int index,
                            const KsField* field) const
{
    const int part = m_entries[static_cast<std::size_t>(index)].part;
    return part >= 0 ? !container->isPartWritten(part) : field->isDefault();
}

void KsFieldData::addWriteReferences(KsOutput* out, const KsFieldContainer* container) const
{
    for (int i = 0; i < getNumFields(); ++i) {
        const KsField* field = getField(container, i, false);
        if (!field) continue;
        const KsField* master = writtenMaster(field);
        if (master) out->impl().at(master->getContainer()).needsName = true;
        if ((master || !isDefault(container, i, field)) &&
            field->getTypeId() == KsSFNode::getClassTypeId())
            field->writeValue(out);
    }
}

void KsFieldData::write(KsOutput* out, const KsFieldContainer* container) const
{
    if (!out || !container) return;
    KsOutput::Impl& im = out->impl();
    if (out->getStage() == KsOutput::COUNT_REFS) {
        // Once for each object, whether its class asks for it or not.
        if (im.isMarked(container)) return;
        if (!std::exchange(im.at(container).fieldsAreCounted, true))
            addWriteReferences(out, container);
        return;
    }
    std::int32_t count = 0;
    std::size_t countAt = 0;
    if (im.binary) {
        countAt = im.text.size();
        out->write(count);
    }
    for (int i = 0; i < getNumFields(); ++i) {
        const KsField* field = getField(container, i, false);
        if (!field) continue;
        const KsField* master = writtenMaster(field);
        const bool connected = master && master->getContainer()->shouldWrite(out);
        if (!connected && isDefault(container, i, field)) continue;
        const KbName& name = m_entries[static_cast<std::size_t>(i)].name;
        ++count;
        if (im.binary) {
            im.putWord(name.view());
            field->writeValue(out);
            im.putBytes(connected ? 1 : 0, 2);
            if (connected) im.writeKey(im.keyOf(master->getContainer()), nameOf(master).view());
            continue;
        }
        im.newLine();
        im.append(name.view());
        im.inlineNode = true;
        field->writeValue(out);
        im.inlineNode = false;
        if (connected) {
            im.append("=");
            im.writeKey(im.keyOf(master->getContainer()), nameOf(master).view());
        }
    }
    if (im.binary) {
        // The number is known only now.
        for (int i = 0; i < 4; ++i)
            im.text[countAt + static_cast<std::size_t>(i)] =
                static_cast<char>(static_cast<std::uint32_t>(count) >> (24 - 8 * i) & 0xff);
    }
}

bool KsFieldContainer::readInstance(KsInput* in, unsigned short)
{
    const KsFieldData* data = getFieldData();
    if (!in || !data) return false;
    const bool notified = enableNotify(false);
    const bool ok = data->read(in, this);
    enableNotify(notified);
    return ok;
}

bool KsFieldContainer::set(const char* text)
{
    const KsKeepAlive alive(this);
    KsInput in;
    in.setBuffer(text, text ? std::strlen(text) : 0);
    in.impl().isProgramText = true;
    const KsFieldData* data = getFieldData();
    if (!data) return false;
    data->read(&in, this);
    if (!in.hasErrors() && !in.eof()) in.impl().expected("a field of " + typeName(this));
    if (!in.hasErrors()) in.impl().connect();
    in.postErrors("KsFieldContainer::set");
    return !in.hasErrors();
}

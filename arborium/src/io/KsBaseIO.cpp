// How objects stand in files: "DEF name Type { ... }" and "USE name".

#include "io/KsInputImpl.h"
#include "io/KsOutputImpl.h"

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/fields/KsFieldContainer.h>

namespace {

using Impl = KsInput::Impl;

/// "a Group", "an EventCallback".
std::string withArticle(KsType type)
{
    const std::string name = type.getName().getString();
    if (name.empty()) return "nothing";
    const bool vowel = std::string_view("AEIOaeio").find(name[0]) != std::string_view::npos;
    return (vowel ? "an " : "a ") + name;
}

std::string nearestType(const Impl& in, std::string_view word, KsType expected)
{
    KsNearestName nearest(in, word);
    KsType::forEach([&](KsType type) {
        if (type.isDerivedFrom(expected) && type.canCreateInstance())
            nearest.offer(type.getName().view());
    });
    return nearest.hint();
}

/// The type if an object of it can be made here; else the bad type, with an error at `token`.
KsType usableType(Impl& in, std::string_view word, KsType expected)
{
    const KsType type = in.typeNamed(word);
    if (type.isDerivedFrom(expected) && type.canCreateInstance()) return type;
    if (type.isBad() || !type.isDerivedFrom(KsBase::getClassTypeId())) {
        in.error("unknown node type " + in.quote(word) + nearestType(in, word, expected));
    } else if (!type.isDerivedFrom(expected)) {
        in.error(in.quote(word) + " cannot stand here; expected " + withArticle(expected));
    } else {
        in.error("the node type " + in.quote(word) + " is only there for others to derive from" +
                 nearestType(in, word, expected));
    }
    return KsType::badType();
}

/// One object that is being read: it stands among the open ones for its lifetime, and takes what
/// its parent did not keep of its children along.
class OpenedObject {
public:
    OpenedObject(Impl& in, KsBase* object, const char* at)
        : m_in(in), m_object(object), m_waiting(in.waiting.size()), m_fieldName(in.fieldName),
          m_fieldOwner(in.fieldOwner)
    {
        in.open.push_back({at, object->getTypeId(), 1});
        in.fieldName = KbName();
    }
    ~OpenedObject()
    {
        const std::int64_t visits = m_in.open.back().visits;
        m_in.open.pop_back();
        m_in.waiting.resize(m_waiting);
        m_in.fieldName = m_fieldName;
        m_in.fieldOwner = m_fieldOwner;
        if (Impl::Reference* mine = m_isNamed ? m_in.find(m_key) : nullptr) {
            if (mine->get() == m_object) {
                mine->isOpen = false;
                mine->visits = visits;
            }
        }
        m_in.addVisits(visits);
    }
    OpenedObject(const OpenedObject&) = delete;
    OpenedObject& operator=(const OpenedObject&) = delete;

    void name(const Impl::Key& key)
    {
        if (!key.name.empty()) m_object->setName(KbName(key.name));
        Impl::Reference reference;
        reference.object = m_object;
        reference.isOpen = true;
        reference.isHandedOut = m_in.open.size() == 1;
        m_in.references[key.toString()] = std::move(reference);
        m_key = key;
        m_isNamed = true;
    }

private:
    Impl& m_in;
    KsBase* m_object;
    std::size_t m_waiting;
    KbName m_fieldName;
    KsType m_fieldOwner;
    Impl::Key m_key;
    bool m_isNamed = false;
};

/// Reads up to and with the closing brace. What should not stand there is told and read over.
void readBody(KsInput* in, Impl& im, KsBase* object)
{
    bool first = true;
    for (;;) {
        const char* const before = im.cur;
        const std::size_t errors = im.errors.size() + static_cast<std::size_t>(im.furtherErrors);
        const bool ok = object->readInstance(in, 0);
        if (im.stopped) return;
        im.skipBlanks();
        if (!ok && errors == im.errors.size() + static_cast<std::size_t>(im.furtherErrors))
            im.errorAt(im.cur, "the text of " + im.quote(object->getTypeId().getName().view()) +
                                   " cannot be read from here on");
        if (im.atEnd()) {
            im.endOfText({});
            return;
        }
        if (*im.cur == '}') {
            ++im.cur;
            return;
        }
        const std::string_view word = im.peekWord();
        auto* container = ksCast<KsFieldContainer>(object);
        const KsFieldData* fields = container ? container->getFieldData() : nullptr;
        if (im.beginsNode(word)) {
            im.error(im.quote(word) + " cannot stand here: " +
                     object->getTypeId().getName().getString() + " holds no children");
            im.skipNode(word);
        } else if (fields && fields->getIndex(im.knownName(word)) >= 0 &&
                   (first || im.cur != before)) {
            // It is read in the next round.
            im.error("the field " + im.quote(word) + " must stand before the children");
        } else if (!first && im.cur == before) {
            // Nothing was read of it, so that nothing would be the next time.
            im.expected("\"}\"");
            if (!word.empty())
                im.take(word);
            else
                im.skipValue(nullptr);
        }
        if (im.stopped) return;
        first = false;
    }
}

bool readText(KsInput* in, Impl& im, KsBase*& result, KsType expected)
{
    for (;;) {
        if (im.stopped) return false;
        std::string_view word = im.peekWord();
        if (!im.beginsNode(word)) return true;

        const char* const start = im.cur;
        Impl::Key key;
        std::string unused;
        if (word == "USE") {
            im.take(word);
            if (!im.readKey(key, unused, false)) {
                im.skipValue(nullptr);
                continue;
            }
            const Impl::Reference* reference = im.find(key);
            if (!reference) {
                im.error("no node before this one is called " + im.quote(key.name) +
                         im.nearestReference(key.name));
                continue;
            }
            if (reference->isOpen) {
                im.error("the node " + im.quote(key.name) +
                         " is not complete here: a node cannot "
                         "stand below itself");
                continue;
            }
            if (!reference->get()->isOfType(expected)) {
                im.error("the node " + im.quote(key.name) + " is " +
                         withArticle(reference->get()->getTypeId()) +
                         " and cannot stand here; expected " + withArticle(expected));
                continue;
            }
            result = reference->get();
            im.addVisits(reference->visits);
            return !im.stopped;
        }
        const bool named = word == "DEF";
        if (named) {
            im.take(word);
            if (!im.readKey(key, unused, false)) {
                im.skipValue(nullptr);
                continue;
            }
            word = im.peekWord();
            if (word.empty()) {
                im.expected("a node type");
                im.skipValue(nullptr);
                continue;
            }
        }
        const KsType type = usableType(im, word, expected);
        im.take(word);
        im.skipBlanks();
        if (im.atEnd()) {
            im.endOfText("\"{\" behind " + im.quote(word));
            return false;
        }
        const char* const brace = im.cur;
        if (*im.cur != '{') {
            // As if it were there: what follows is most likely the node's text.
            im.expected("\"{\" behind " + im.quote(word));
            if (type.isBad()) continue;
        } else if (type.isBad()) {
            im.skipBraces();
            continue;
        } else {
            ++im.cur;
        }
        if (!im.mayBegin(start)) return false;
        auto* object = static_cast<KsBase*>(type.createInstance());
        if (!object) {
            im.stop("a node of the type " + im.quote(word) + " cannot be made");
            return false;
        }
        object->ref();
        {
            OpenedObject opened(im, object, brace);
            if (named) opened.name(key);
            readBody(in, im, object);
        }
        if (im.stopped) {
            object->unref();
            return false;
        }
        if (!im.open.empty()) im.waiting.emplace_back(object);
        object->unrefNoDelete();
        result = object;
        return true;
    }
}

bool readBinary(KsInput* in, Impl& im, KsBase*& result, KsType expected)
{
    if (im.stopped) return false;
    if (im.atEnd() && im.open.empty()) return true;

    const char* const start = im.cur;
    std::string_view word;
    const std::int64_t limit = KsLimits::current().nameBytes;
    if (!im.readBinaryText(word, limit, "a word")) return false;
    if (word.empty()) return true;

    Impl::Key key;
    if (word == "USE") {
        if (!im.readBinaryKey(key)) return false;
        const Impl::Reference* reference = im.find(key);
        if (!reference)
            return im.binaryError("no node before this one is called " + im.quote(key.name));
        if (reference->isOpen)
            return im.binaryError("the node " + im.quote(key.name) +
                                  " is not complete here: a node cannot stand below itself");
        if (!reference->get()->isOfType(expected))
            return im.binaryError("the node " + im.quote(key.name) + " is " +
                                  withArticle(reference->get()->getTypeId()) +
                                  " and cannot stand here; expected " + withArticle(expected));
        result = reference->get();
        im.addVisits(reference->visits);
        return !im.stopped;
    }
    const bool named = word == "DEF";
    if (named && (!im.readBinaryKey(key) || !im.readBinaryText(word, limit, "a word")))
        return false;
    im.token = start;
    const KsType type = usableType(im, word, expected);
    if (type.isBad()) {
        im.stopped = true; // without its text understood, its end is not known
        return false;
    }
    unsigned short flags = 0;
    if (!im.mayBegin(start) || !in->read(flags)) return false;
    auto* object = static_cast<KsBase*>(type.createInstance());
    if (!object) return im.binaryError("a node of the type " + im.quote(word) + " cannot be made");
    object->ref();
    {
        OpenedObject opened(im, object, start);
        if (named) opened.name(key);
        if (!object->readInstance(in, flags) && !im.stopped)
            im.binaryError("the data of " + im.quote(word) + " cannot be read");
    }
    if (im.stopped) {
        object->unref();
        return false;
    }
    if (!im.open.empty()) im.waiting.emplace_back(object);
    object->unrefNoDelete();
    result = object;
    return true;
}

} // namespace

bool KsBase::read(KsInput* in, KsBase*& result, KsType expected)
{
    result = nullptr;
    if (!in) return false;
    Impl& im = in->impl();
    return im.binary ? readBinary(in, im, result, expected) : readText(in, im, result, expected);
}

// ---- writing --------------------------------------------------------------------------------

void KsBase::addWriteReference(KsOutput* out)
{
    if (!out || !out->impl().meet(this)) return;
    // What its fields refer to is counted with it.
    if (const auto* container = ksCast<KsFieldContainer>(this))
        container->getFieldData()->addWriteReferences(out, container);
}

bool KsBase::shouldWrite(KsOutput* out) const { return out && out->getReferenceCount(this) > 0; }

bool KsBase::hasMultipleWriteRefs(KsOutput* out) const
{
    return out && out->getReferenceCount(this) > 1;
}

bool KsBase::writeHeader(KsOutput* out, bool isGroup, bool)
{
    if (!out) return true;
    KsOutput::Impl& im = out->impl();
    KsOutput::Impl::Reference* const known =
        im.isMarked(this) && getName().isEmpty() ? nullptr : &im.at(this);
    const bool inlineNode = im.inlineNode;
    im.inlineNode = false;
    if (!im.binary && !inlineNode) {
        im.newLine();
        // Nodes at the top of a file stand apart.
        if (im.indentation == 0 && !im.text.empty()) im.text += '\n';
    }
    // Only what was written with a name can be used by it.
    if (known && known->isDefined) {
        if (im.binary)
            im.putWord("USE");
        else
            im.append("USE");
        im.writeKey(im.keyOf(this));
        return true;
    }
    const KsLimits& limits = KsLimits::current();
    if (++im.level > limits.nesting)
        im.tellBeyond(KsOutput::Impl::Nesting, "nodes stand inside each other", limits.nesting,
                      "levels of nesting");
    if (++im.numObjects > limits.nodesPerFile)
        im.tellBeyond(KsOutput::Impl::Nodes, "the file has", limits.nodesPerFile, "nodes");
    if (known && (!getName().isEmpty() || known->count > 1 || known->needsName)) {
        known->isDefined = true;
        if (im.binary)
            im.putWord("DEF");
        else
            im.append("DEF");
        im.writeKey(im.keyOf(this));
    }
    const KbName type = getTypeId().getName();
    if (im.binary) {
        im.putWord(type.view());
        im.putBytes(isGroup ? 2 : 0, 2);
        return false;
    }
    im.append(type.view());
    im.append("{");
    im.newLine();
    ++im.indentation;
    return false;
}

void KsBase::writeFooter(KsOutput* out)
{
    if (!out) return;
    KsOutput::Impl& im = out->impl();
    --im.level;
    if (im.binary) return;
    --im.indentation;
    im.newLine();
    im.append("}");
    if (im.indentation == 0) im.newLine();
}

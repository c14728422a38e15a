#include <arborium/io/KsDB.h>

#include "io/KsInputImpl.h"
#include "io/KsOutputImpl.h"

#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/nodes/KsSeparator.h>

namespace {

int s_initCount = 0;

/// What holds the content of a file. As long as nothing was set on it, it is not written itself
/// where it is all that is written: a file that is read and written stays the same.
class FileRoot final : public KsSeparator {
public:
    void write(KsWriteAction* action) override
    {
        KsOutput* out = action->getOutput();
        const bool isAll = action->getPathCode() == KsAction::NO_PATH &&
                           action->getCurPath()->getLength() == 1 && out->impl().depth == 0;
        if (!isAll || !getName().isEmpty() || !hasDefaultValues() ||
            out->getReferenceCount(this) > 0) {
            KsSeparator::write(action);
            return;
        }
        for (int i = 0; i < getNumChildren(); ++i) action->traverse(getChildren()->get(i), i);
    }
};

bool readNode(KsInput* in, KsNode*& node)
{
    KsBase* object = nullptr;
    if (!KsBase::read(in, object, KsNode::getClassTypeId())) return false;
    node = static_cast<KsNode*>(object);
    return true;
}

bool isReadable(KsInput* in, const char* where)
{
    if (!in) {
        KsDebugError::post(where, "There is no input");
        return false;
    }
    KsInput::Impl& im = in->impl();
    if (!im.isOpen && !in->hasErrors()) im.keep({im.fileName, 0, 0, "no file is open"});
    return im.isOpen;
}

} // namespace

void KsDB::init()
{
    if (s_initCount++ > 0) return;
    KsTypedObject::initClass();
    KsBase::initClass();
    KsFieldContainer::initClass();
    KsNode::initClasses();
}

void KsDB::finish()
{
    if (s_initCount == 0) return;
    if (--s_initCount == 0) KsNode::exitClasses();
}

bool KsDB::isInitialized() { return s_initCount > 0; }

int KsDB::getInitCount() { return s_initCount; }

KsSeparator* KsDB::readAll(KsInput* in)
{
    KsSeparator* root = parse(in);
    if (in && !root) in->postErrors("KsDB::readAll");
    return root;
}

KsSeparator* KsDB::parse(KsInput* in)
{
    if (!isReadable(in, "KsDB::readAll")) return nullptr;
    KsInput::Impl& im = in->impl();
    KsRef<KsSeparator> root(new FileRoot);
    root->enableNotify(false);
    while (!im.stopped) {
        KsNode* node = nullptr;
        if (!readNode(in, node)) break;
        if (node) {
            const KsRef<KsNode> held(node);
            root->addChild(node);
            continue;
        }
        if (in->eof()) break;
        if (im.binary) {
            im.token = im.cur;
            im.binaryError("expected a node");
            break;
        }
        im.expected("a node");
        const std::string_view word = im.wordAt(im.cur);
        if (!word.empty())
            im.take(word);
        else if (*im.cur == '}')
            ++im.cur;
        im.skipValue(nullptr);
    }
    if (!in->hasErrors()) im.connect();
    for (auto& each : im.references) each.second.isHandedOut = false;
    im.forgetObjects();
    root->enableNotify(true);
    if (in->hasErrors()) return nullptr;
    KsSeparator* const result = root;
    result->ref();
    root.reset();
    result->unrefNoDelete();
    return result;
}

bool KsDB::read(KsInput* in, KsNode*& node)
{
    node = nullptr;
    if (!isReadable(in, "KsDB::read")) {
        if (in) in->postErrors("KsDB::read");
        return false;
    }
    KsInput::Impl& im = in->impl();
    if (in->hasErrors()) return false;
    KsNode* result = nullptr;
    if (readNode(in, result) && !result && !in->eof() && !im.stopped) im.expected("a node");
    {
        const KsKeepAlive keep(result);
        if (!in->hasErrors()) im.connect();
    }
    if (in->hasErrors()) {
        if (result) {
            const KsRef<KsNode> dying(result);
            im.forgetObjects();
        }
        in->postErrors("KsDB::read");
        return false;
    }
    for (auto& each : im.references) each.second.handOver();
    node = result;
    return true;
}

#pragma once

#include <arborium/base/KsRefCounter.h>
#include <arborium/base/KsTypedObject.h>

#include <cstdint>
#include <list>
#include <vector>

class KsInput;
class KsOutput;

/// Base of everything that can be named, referenced, read and written.
class ARBORIUM_API KsBase : public KsRefCounter, public KsTypedObject {
public:
    static KsType getClassTypeId();
    static void initClass();

    /// The name by which a file or `KsNode::getByName` finds the object; empty if it has none.
    const KbName& getName() const { return m_name; }
    /// Several objects may have the same name. The empty name takes the object's name away. An
    /// object that dies is not found by its name any more.
    void setName(const KbName& name);
    /// Appends the objects with this name, in the order of their naming. The empty name yields none.
    static void getNamed(const KbName& name, std::vector<KsBase*>& list);
    /// The first object of a type derived from `type` with this name, or null.
    static KsBase* getFirstNamed(const KbName& name, KsType type);

    /// Reads one object of a type derived from `expected`. TRUE with `result` null means that no
    /// such object follows (a closing brace, the end of the input). What is wrong is recorded in the
    /// input and read over, so that all errors of a file are found; FALSE where that cannot be done.
    /// A new object comes without a reference; within another one that is being read, it lives as
    /// long as that is read, or as somebody references it.
    static bool read(KsInput* in, KsBase*& result, KsType expected);

    /// TRUE for objects whose children stand behind their fields in a file.
    virtual bool isGroup() const { return false; }

    // Writing: first every object is counted, then written; an object met twice is written once,
    // with a name, and used by that name afterwards.
    /// Counts one more place at which the object stands, while `out` counts. Null does nothing.
    void addWriteReference(KsOutput* out);
    /// Whether it was counted at all, and more than once. FALSE for null.
    bool shouldWrite(KsOutput* out) const;
    bool hasMultipleWriteRefs(KsOutput* out) const;
    /// Writes "USE name" and returns TRUE if the object is in the output already; otherwise writes
    /// "DEF name Type {" and returns FALSE. Null writes nothing and yields TRUE.
    bool writeHeader(KsOutput* out, bool isGroup, bool isEngine = false);
    /// Writes the closing brace.
    void writeFooter(KsOutput* out);

    /// Reads what stands between the braces. `flags` come from the binary header of the object;
    /// bit 2 (value 2) tells that children follow.
    virtual bool readInstance(KsInput* in, unsigned short flags) = 0;

    /// Number of `KsBase` objects alive: for leak guards in tests.
    static int getNumInstances();

    // Plumbing.
    /// The number of the last writing that met this object once; 0 if there was none.
    std::uint32_t getWriteMark() const { return m_writeMark; }
    void setWriteMark(std::uint32_t mark) const { m_writeMark = mark; }

protected:
    KsBase();
    ~KsBase() override;
    void destroy() override;
    /// Tells what watches this object that it is about to go: once, when the last reference was
    /// given back, and before it is deleted.
    virtual void notifyDelete() {}

private:
    KbName m_name;
    std::list<KsBase*>::iterator
        m_namedAt; ///< Among the objects of this name; none without a name.
    mutable std::uint32_t m_writeMark = 0;
};

/// Keeps an object under construction alive for the duration of its constructor.
class ARBORIUM_API KsBaseInitializer {
public:
    /// Null is allowed.
    explicit KsBaseInitializer(KsBase* instance) : m_instance(instance)
    {
        if (m_instance) m_instance->ref();
    }
    ~KsBaseInitializer()
    {
        if (m_instance) m_instance->unrefNoDelete();
    }
    KsBaseInitializer(const KsBaseInitializer&) = delete;
    KsBaseInitializer& operator=(const KsBaseInitializer&) = delete;

private:
    KsBase* m_instance;
};

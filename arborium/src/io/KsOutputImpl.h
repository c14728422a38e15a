#pragma once

#include <arborium/base/KsBase.h>
#include <arborium/io/KsOutput.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

/// The text that is being written, kept in memory until the file is closed. An ASCII text is
/// Latin-1 until the first character that needs more; from then on all of it is UTF-8.
struct KsOutput::Impl {
    std::string text;
    KbString path;
    bool isFileOpen = false;
    bool binary = false;
    bool utf8 = false;
    bool synchronizing = false;
    Stage stage = WRITE;

    // ---- limits -------------------------------------------------------------------------------

    enum Limit : unsigned {
        Nesting = 1,
        StringBytes = 2,
        NameBytes = 4,
        FileBytes = 8,
        Nodes = 16
    };
    unsigned told = 0; ///< Of these limits, so that each is told once.
    std::int64_t numObjects = 0;
    int level = 0;          ///< Of the object that is being written.
    int walked = 0;         ///< The same in one traversal, with those that leave no mark.
    bool isPartial = false; ///< Something of the scene could not be reached.
    /// Tells that what is written could not be read again. It is written all the same.
    void tellBeyond(Limit limit, const char* what, std::int64_t most, const char* unit);

    // ---- ASCII layout -------------------------------------------------------------------------

    int indentation = 0;
    bool lineIsEmpty = true;
    bool blankBefore = false; ///< The next value needs a blank before it.
    bool inlineNode = false;  ///< The next node stands behind a field's name.
    std::size_t lineStart = 0;

    /// The first line; does nothing if something was written already.
    void beginFile();
    void newLine();
    /// Puts the indentation, or a blank, before what follows.
    void beginValue();
    void append(std::string_view ascii);
    void appendText(const KbString& value);
    void appendLatin1(std::string_view latin1);
    void becomeUtf8();
    /// For values in brackets: a line that is full goes on in the next one.
    void wrap();

    // ---- binary -------------------------------------------------------------------------------

    void putBytes(std::uint64_t value, int bytes);
    void putWord(std::string_view word);

    // ---- references ---------------------------------------------------------------------------

    struct Key {
        KbName name;
        int suffix = -1;
    };
    struct Reference {
        // In the present scene.
        int scene = 0;
        int count = 0;
        bool fieldsAreCounted = false;
        bool needsName = false; ///< A connection leads to it.
        // In the whole file.
        bool hasKey = false;
        bool isDefined = false; ///< All of it stands behind a DEF.
        Key key;
    };
    std::unordered_map<const KsBase*, Reference> references;
    std::unordered_set<std::string> keys; ///< In use, as text.
    std::unordered_map<KbName, int> nextSuffix;
    int depth = 0; ///< Of nodes in fields.
    int scene = 0; ///< Counts what is written one after the other: each is counted anew.

    /// Most objects of a scene are met once and bear no name. Of these the table has no entry: the
    /// object itself bears the number of the writing, until something more is to be known of it. An
    /// object bears one number, so that one writing at a time has one; others keep a full table.
    class Writing;
    std::uint32_t writing = 0; ///< The number; 0 if this one has none.
    bool isMarked(const KsBase* object) const
    {
        return writing != 0 && object->getWriteMark() == writing;
    }

    /// Null if the table has no entry of the object.
    Reference* find(const KsBase* object);
    /// Made if it is not there.
    Reference& at(const KsBase* object);
    Reference& inPresentScene(Reference& reference) const;
    int countOf(const KsBase* object);
    /// Counts one more reference. TRUE if what the object's fields refer to is still to be counted.
    bool meet(const KsBase* object);
    const Key& keyOf(const KsBase* object);
    static std::string toText(const Key& key);
    /// A name of DEF or USE.
    void writeKey(const Key& key, std::string_view field = {});
};

/// The time in which objects are counted and written.
class KsOutput::Impl::Writing {
public:
    explicit Writing(Impl& out);
    ~Writing();
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

private:
    Impl* m_out; ///< Null if there is another one.
};

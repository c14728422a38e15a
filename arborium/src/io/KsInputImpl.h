#pragma once

#include <arborium/base/KsRefCounter.h>
#include <arborium/base/KsType.h>
#include <arborium/fields/KsFieldContainer.h>
#include <arborium/io/KsInput.h>
#include <arborium/sensors/KsSensor.h>

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class KsField;

/// The tokens of a scene file, its errors, and what a reader must remember between two objects.
/// After an error that nothing can be read behind, `stopped` is set and every read fails silently.
struct KsInput::Impl {
    // ---- the text -----------------------------------------------------------------------------

    std::string contents; ///< Of a file; a buffer belongs to the caller.
    const char* begin = nullptr;
    const char* cur = nullptr;
    const char* end = nullptr;
    const char* token = nullptr; ///< Where the last token began.
    std::string fileName;
    KbString path; ///< Of a file, as it was opened.
    bool isOpen = false;
    bool isFile = false;
    bool isProgramText = false; ///< Part of the program, and trusted as it is.
    bool binary = false;
    bool utf8 = false;
    bool stopped = false;
    float version = 2.1f;

    void reset();
    void start(const char* text, std::size_t size);
    /// Reads the first line; a file must have one.
    void readHeader();

    // ---- errors -------------------------------------------------------------------------------

    std::vector<KsReadError> errors;
    int furtherErrors = 0;
    const char* lastErrorAt = nullptr;
    /// The field whose value is read, for messages.
    KbName fieldName;
    KsType fieldOwner;
    KsType nodeType; ///< Of the nodes that it takes; bad for any.

    struct Place {
        int line;
        int column;
    };
    Place placeOf(const char* at);
    const char* lineSeen = nullptr; ///< How far lines were counted, and what was found.
    const char* lineStart = nullptr;
    int lineNumber = 1;
    /// How each limit is named: "the limit of 512 levels of nesting".
    static std::string limitText(std::int64_t limit, const char* what);
    bool keepsErrors() const;
    void keep(KsReadError error);
    void keepAll(const KsInput& other);
    /// Records an error; a second one at the same place would only be the first one's echo.
    void errorAt(const char* at, const std::string& message);
    void error(const std::string& message) { errorAt(token, message); }
    /// As `error`, and ends the read.
    void stop(const std::string& message);
    /// "expected WHAT, met ..." at the next token; returns FALSE.
    bool expected(const std::string& what);
    /// The file ended although something is still to come.
    void endOfText(const std::string& what);
    std::string describeNext();
    /// In double quotes, as UTF-8, without control characters, shortened if it is long.
    std::string quote(std::string_view text) const;

    // ---- ASCII tokens -------------------------------------------------------------------------

    enum CharKind : std::uint8_t { Blank = 1, Word = 2, Digit = 4, Letter = 8 };
    static const std::array<std::uint8_t, 256> charKinds;
    static bool is(char c, std::uint8_t kinds)
    {
        return charKinds[static_cast<unsigned char>(c)] & kinds;
    }

    bool atEnd() const { return cur == end; }
    const char* behindBlanks(const char* at) const;
    void skipBlanks() { cur = behindBlanks(cur); }
    /// The word that begins at `at`; empty if none does.
    std::string_view wordAt(const char* at) const
    {
        const char* p = at;
        while (p != end && is(*p, Word)) ++p;
        return std::string_view(at, static_cast<std::size_t>(p - at));
    }
    /// The next word, which becomes the token but is not taken.
    std::string_view peekWord()
    {
        skipBlanks();
        token = cur;
        return wordAt(cur);
    }
    void take(std::string_view word) { cur += word.size(); }
    /// The next character behind `at` that is no blank or comment; 0 at the end.
    char charBehind(const char* at) const
    {
        const char* p = behindBlanks(at);
        return p == end ? '\0' : *p;
    }
    static bool looksNumeric(std::string_view word);
    /// Whether a node begins with this word at the present place.
    bool beginsNode(std::string_view word) const;
    /// The type that a word of the input names; the bad type if there is none.
    KsType typeNamed(std::string_view word) const;
    /// As `KbName::findExisting`, of a word of the input.
    KbName knownName(std::string_view word) const;

    /// What was found of the words that come again and again: types, fields, values of enums.
    struct Known {
        std::string_view word; ///< Where it stands in the input.
        KbName name;
        KsType type;
    };
    mutable std::array<Known, 64> memo{};
    Known& knownAt(std::string_view word) const
    {
        std::size_t hash = word.size() * 7;
        if (!word.empty()) {
            const auto at = [&word](std::size_t i) { return static_cast<unsigned char>(word[i]); };
            hash += at(0) + at(word.size() / 2) * 5u + at(word.size() - 1) * 3u;
        }
        return memo[hash % memo.size()];
    }

    template <class Number> bool readNumber(Number& value)
    {
        skipBlanks();
        token = cur;
        const auto [p, problem] = std::from_chars(cur, end, value);
        if (problem == std::errc() && (p == end || !is(*p, Word)) && isFinite(value)) {
            cur = p;
            return true;
        }
        return readOddNumber(value);
    }
    template <class Number> static bool isFinite(Number value)
    {
        if constexpr (std::is_floating_point<Number>::value)
            return std::isfinite(value);
        else
            return true;
    }
    // What the fast path above does not take: a sign "+", a hexadecimal number, or no number.
    bool readOddNumber(std::int32_t& value);
    bool readOddNumber(std::uint32_t& value);
    bool readOddNumber(float& value);
    bool readOddNumber(double& value);
    bool readBool(bool& value);
    bool readString(KbString& value);
    /// The text between the quotes that begin at the present place, escapes resolved.
    bool readQuoted(std::string& bytes);
    KbString decode(std::string_view bytes) const;
    std::string decodeName(std::string_view bytes) const;

    /// A name of DEF or USE: a word or a string, and a number that tells objects of the same name
    /// apart ("Name+2"; "+2" for objects without a name).
    struct Key {
        std::string name;
        int suffix = -1;
        std::string toString() const;
    };
    bool readKey(Key& key, std::string& field, bool withField);

    /// Skips the value of a field. `fields` are those of the present object, or null: where one
    /// of their names stands, the value is over.
    void skipValue(const KsFieldData* fields);
    /// From an opening brace to the matching one.
    void skipBraces();
    void skipBrackets();
    void skipQuoted();
    /// DEF, name, type and braces, or USE and name.
    void skipNode(std::string_view word);

    // ---- binary -------------------------------------------------------------------------------

    std::size_t bytesLeft() const { return static_cast<std::size_t>(end - cur); }
    /// Whether so many bytes follow; they become the token.
    bool need(std::size_t bytes)
    {
        token = cur;
        return (!stopped && bytesLeft() >= bytes) || needMore(bytes);
    }
    bool needMore(std::size_t bytes);
    bool binaryError(const std::string& message);
    bool readBytes(std::uint32_t& value, int bytes)
    {
        if (!need(static_cast<std::size_t>(bytes))) return false;
        const char* const p = cur;
        cur += bytes;
        value = 0;
        for (int i = 0; i < bytes; ++i) value = value << 8 | static_cast<unsigned char>(p[i]);
        return true;
    }
    /// `text` stands in the input.
    bool readBinaryText(std::string_view& text, std::int64_t limit, const char* what);
    bool readBinaryKey(Key& key);

    // ---- objects ------------------------------------------------------------------------------

    struct OpenObject {
        const char* at; ///< Of the opening brace.
        KsType type;
        std::int64_t visits = 1; ///< Nodes below it, shared ones counted each time.
    };
    std::vector<OpenObject> open;
    std::int64_t numObjects = 0; ///< This and the two below: of all that includes count together.
    std::int64_t numBytes = 0;
    std::int64_t numFiles = 0; ///< Included ones.
    std::int64_t topVisits = 0;
    int outerDepth = 0; ///< Of the file that includes this one.

    struct Reference {
        KsRef<KsBase> object;
        /// In place of `object`, once the caller has it and decides how long it lives.
        std::unique_ptr<KsNodeSensor> watch;
        std::int64_t visits = 0;
        bool isOpen = false;
        bool isHandedOut = false; ///< The caller may have been given it without a reference.

        KsBase* get() const;
        void handOver();
    };
    std::unordered_map<std::string, Reference> references;
    /// Complete objects whose parent is still being read: what no parent took dies with it.
    std::vector<KsRef<KsBase>> waiting;

    struct Connection {
        KsRef<KsFieldContainer> container;
        KsField* field;
        std::string master; ///< Key of the object.
        std::string masterField;
        const char* at;
    };
    std::vector<Connection> connections;

    const Impl* includer = nullptr;

    Reference* find(const Key& key);
    /// For messages about a name that is not known.
    std::string nearestReference(const std::string& name) const;
    void addVisits(std::int64_t visits);
    bool mayBegin(const char* at);
    void connect();
    /// Gives back all references. What was handed out stays alive.
    void forgetObjects();
};

/// The candidate that is most like a wrong word; "" if there are no candidates.
class KsNearestName {
public:
    /// Nothing is looked for once the input keeps no more errors.
    KsNearestName(const KsInput::Impl& in, std::string_view word);
    void offer(std::string_view candidate);
    const std::string& get() const { return m_best; }
    /// `; the nearest is "name"`, or nothing.
    std::string hint() const;

private:
    std::string m_word;
    std::string m_best;
    std::size_t m_distance = 0;
};

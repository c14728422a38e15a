#pragma once

#include <arborium/base/KbName.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KbStringList.h>
#include <arborium/base/KsType.h>

#include <cstdint>
#include <memory>
#include <vector>

class KsBase;

/// What is wrong at one place of a file.
struct ARBORIUM_API KsReadError {
    std::string file; ///< As it was opened; "<buffer>" for a buffer.
    int line = 0;     ///< From 1; 0 for what concerns the file as a whole.
    int column = 0;   ///< From 1, in characters.
    std::string message;
    /// "file:line:column: message".
    std::string toString() const;
};

/// Reads scene files, ASCII (`#Arborium V2.1 ascii`, Latin-1; `#Arborium V2.1 ascii utf8`) and
/// binary (`#Arborium V2.1 binary`, `#Arborium V1.0 binary`). A reader goes on behind an error
/// where it can, so that one run finds all errors of a file; the read as a whole fails.
class ARBORIUM_API KsInput {
public:
    /// Nothing is open at first.
    KsInput();
    ~KsInput();
    KsInput(const KsInput&) = delete;
    KsInput& operator=(const KsInput&) = delete;

    /// Opens a file: as named if the name is absolute, else in the directories of the list, in
    /// order (the list begins with "."). FALSE if it cannot be opened or is no regular file; with
    /// `okIfNotFound` a missing file is no error and posts no message. A file that was open is
    /// closed first. `flag` has no meaning.
    bool openFile(const KbString& path, bool okIfNotFound = false, bool flag = false);
    /// Gives back what was held for the read. The errors stay.
    void closeFile();
    /// Reads from memory, which must stay until the end of the read. A buffer needs no first line.
    /// Null is an empty buffer.
    void setBuffer(const void* buffer, std::size_t size);

    /// Where `openFile`, and names that stand in files, are looked up, by default in "." alone. An
    /// empty name is ignored; what is in the list already is looked up again.
    static void addDirectoryFirst(const KbString& directory);
    static void addDirectoryLast(const KbString& directory);
    /// Takes the first directory of this name, as it was added, out of the list.
    static void removeDirectory(const KbString& directory);
    /// Leaves none, not even ".": then only full names are found.
    static void clearDirectories();
    static const KbStringList& getDirectories();
    /// By default a file that is named in another one (an included scene, an image) must lie below the
    /// folder of that file or below a directory of the list, links followed. With FALSE it may lie
    /// anywhere: for programs that trust their files.
    static void setConfined(bool confined);
    static bool isConfined();

    /// The name under which the file was found, or "<buffer>". It stays until the next one is
    /// opened.
    const std::string& getFileName() const;
    /// As the first line says; FALSE without one.
    bool isBinary() const;
    /// 2.1, 2.0 or 1.0, as the first line says; 2.1 without one.
    float getVersion() const;
    /// TRUE between `openFile` or `setBuffer` and `closeFile`.
    bool isOpen() const;
    /// TRUE if nothing but blanks and comments follows.
    bool eof();
    /// Bytes that have not been read.
    std::size_t getBytesLeft() const;
    /// The place of the last token read, as "file:line:column".
    std::string getPlace() const;

    /// In the order in which they were found; they stay until the next file is opened.
    const std::vector<KsReadError>& getErrors() const;
    /// Whether there is any.
    bool hasErrors() const { return !getErrors().empty(); }
    /// Errors beyond the limit, which are counted only.
    int getNumFurtherErrors() const;
    /// Posts the list of errors, each as one message, and what was left out.
    void postErrors(const char* where = "KsDB::readAll") const;

    // For fields and nodes. Each read yields FALSE at an error that it has recorded, unless it says
    // otherwise; `addError` records one at the place of the last token read. Numbers are whole
    // words, in the C locale, in the range of their type and finite.
    /// A number; in a binary file of 4, 4, 2, 4 and 8 bytes, the highest first.
    bool read(std::int32_t& value);
    bool read(std::uint32_t& value);
    bool read(unsigned short& value);
    bool read(float& value);
    bool read(double& value);
    /// TRUE, FALSE, 1 or 0.
    bool read(bool& value);
    /// A string: quoted, with \" and \\ as escapes (any other backslash stands for itself), or a
    /// word that begins with a letter.
    bool read(KbString& value);
    bool read(KbName& value);
    /// Binary: a number of things that take at least `bytesEach` bytes; refused if so many cannot
    /// follow, or if they are more than `limit`.
    bool readCount(std::int32_t& count, std::size_t bytesEach, std::int64_t limit);
    /// A word of letters, digits and the characters that names may have. FALSE without an error if
    /// none follows.
    bool readWord(KbName& word);
    /// The next word without taking it; FALSE if none follows.
    bool peekWord(KbName& word);
    /// The next character that is no blank or comment, without taking it; 0 at the end.
    char peekChar();
    /// Takes `c` if it is the next character that is no blank or comment; FALSE without an error if
    /// it is not.
    bool takeChar(char c);
    /// Takes `c`, or records an error that says what came instead of `what`; null stands for the
    /// character itself. A binary file has none of these characters.
    bool expectChar(char c, const char* what);
    /// Records an error at the place of the last token read; one more at the same place is dropped.
    /// An error in a binary file ends its read.
    void addError(const std::string& message);
    /// What stands at the present place, for messages: `"foo"`, `'}'`, `the end of the file`, `byte
    /// 7` of a binary file.
    std::string describeNext();
    /// Goes on behind an error: skips a value up to the next word that may begin a field or node,
    /// or the brace that closes the present node.
    void skipValue();
    /// Skips a node's text from its opening brace to the matching one; nothing if none follows.
    void skipBraces();

    // References by the names that DEF and USE give. A later one of the same name counts.
    /// Lets the file use `object` by this name. The input holds a reference to it until it is
    /// closed. Null is ignored.
    void addReference(const KbName& name, KsBase* object);
    /// Null for a name that nothing had so far.
    KsBase* findReference(const KbName& name) const;

    // Plumbing.
    struct Impl;
    Impl& impl() { return *m_impl; }

private:
    std::unique_ptr<Impl> m_impl;
};

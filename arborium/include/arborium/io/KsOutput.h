#pragma once

#include <arborium/base/KbName.h>
#include <arborium/base/KbString.h>

#include <cstdint>
#include <memory>
#include <string>

class KsBase;

/// Writes scene files. A file is written to a temporary name beside it and takes its place when it
/// is closed; after a failure the old file is as it was.
class ARBORIUM_API KsOutput {
public:
    /// First the references are counted, then the text is written.
    enum Stage { COUNT_REFS, WRITE };

    /// Writes to memory until a file is opened. The end of the output closes its file.
    KsOutput();
    ~KsOutput();
    KsOutput(const KsOutput&) = delete;
    KsOutput& operator=(const KsOutput&) = delete;

    /// What follows goes to this file, and what was written so far is forgotten; a file that was
    /// open is closed first. FALSE with a message if the file cannot be written, or the former one
    /// could not.
    bool openFile(const KbString& path);
    /// FALSE with a message if something of the file could not be written: then the old file stays.
    /// TRUE where none is open.
    bool closeFile();
    /// What has been written so far, with or without a file.
    const std::string& getBuffer() const;
    /// The form of the file, ASCII by default. Once something is written it cannot change: a
    /// message.
    void setBinary(bool binary);
    bool isBinary() const;
    /// WRITE unless the action that writes says otherwise.
    Stage getStage() const;
    void setStage(Stage stage);

    // For fields and nodes. In an ASCII file each value stands behind a blank.
    /// A number, as `KsInput::read` takes it.
    void write(std::int32_t value);
    void write(std::uint32_t value);
    void write(unsigned short value);
    /// A number that is not finite cannot stand in a file: it becomes the largest one of its sign,
    /// or 0.
    void write(float value);
    void write(double value);
    void write(const KbString& value); ///< Quoted and escaped.
    void writeWord(const char* word);  ///< As it stands; null is the empty word.
    void writeChar(char c);            ///< As it stands; nothing in a binary file.
    /// By four blanks, from the next line on.
    void incrementIndent();
    void decrementIndent();
    /// What follows begins a line of its own, indented.
    void newLine();

    /// Counts one more reference and returns their number; 0 for null.
    int addReference(const KsBase* object);
    /// The number so far; 0 for what was never counted. What `KsWriteAction` counts is known while it
    /// writes.
    int getReferenceCount(const KsBase* object) const;
    /// The name by which an object that was written is used; empty if it was not written, or has
    /// none.
    KbName findName(const KsBase* object) const;
    /// Gives the object a name that no other object of this output has: its own where possible,
    /// else with "+" and a number behind it. The same at each call; empty for null.
    KbName makeName(const KsBase* object);

    // Plumbing.
    struct Impl;
    Impl& impl() { return *m_impl; }

private:
    std::unique_ptr<Impl> m_impl;
};

/// What a cluster needs to know of an output.
struct ARBORIUM_API KsOutputImpl {
    /// TRUE while the output brings another process in step with this one.
    /// FALSE by default, and for null.
    static bool isSynchronizing(const KsOutput* out);
    static void setSynchronizing(KsOutput* out, bool synchronizing);
};

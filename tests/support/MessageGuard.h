#pragma once

#include <string>
#include <vector>

/// Each message that a test provokes through `KsDebugError` must have been announced, or the test
/// fails; an announced message that does not come fails it as well. Warnings of Qt, which tell of a
/// wrong call to a widget or layout, count as messages from "Qt".
///
///     ExpectedMessages messages("KsFormweave::addChild", "null");
///     dialog->addChild(nullptr);
///
/// Announcements hold until the object dies. They may be nested; the innermost is asked first.
class ExpectedMessages {
public:
    struct Message {
        std::string where;
        std::string text;
        int severity = 0;
    };

    /// Announces nothing yet; see expect() and allow().
    ExpectedMessages();

    /// Announces one message, from a place that equals @p where, with a text that holds
    /// @p substring. An empty text stands for any.
    ExpectedMessages(const char* where, const char* substring, int times = 1,
                     const char* file = __builtin_FILE(), int line = __builtin_LINE());

    ~ExpectedMessages();

    ExpectedMessages(const ExpectedMessages&) = delete;
    ExpectedMessages& operator=(const ExpectedMessages&) = delete;

    /// Announces @p times more messages of this kind.
    ExpectedMessages& expect(const char* where, const char* substring, int times = 1,
                             const char* file = __builtin_FILE(), int line = __builtin_LINE());

    /// Lets any number of messages of this kind pass, none included.
    ExpectedMessages& allow(const char* where, const char* substring);

    /// What came so far and matched, in order.
    const std::vector<Message>& messages() const { return m_messages; }

    /// The same as one text, a message a line; empty if none came.
    std::string text() const;

private:
    friend class MessageGuard;

    struct Pattern {
        std::string where;
        std::string substring;
        int left; // messages still to come; -1: any number
        const char* file;
        int line;
    };

    bool take(const Message& message);

    std::vector<Pattern> m_patterns;
    std::vector<Message> m_messages;
    ExpectedMessages* m_outer;
};

/// Installs the guard for all tests of the program; main() calls it once.
void installMessageGuard();

#include "MessageGuard.h"

#include <arborium/base/KsDebugError.h>

#include <gtest/gtest.h>

#include <QString>

#include <cstdio>

namespace {
ExpectedMessages* s_innermost = nullptr;

bool matches(const std::string& pattern, const std::string& where)
{
    return pattern.empty() || pattern == where;
}
} // namespace

class MessageGuard : public testing::EmptyTestEventListener {
public:
    static void receive(void* data, KsDebugError::Severity severity, const char* where,
                        const char* text)
    {
        ExpectedMessages::Message message;
        message.where = where ? where : "";
        message.text = text ? text : "";
        message.severity = static_cast<int>(severity);
        static_cast<MessageGuard*>(data)->judge(message);
    }

    static void receiveFromQt(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        ExpectedMessages::Message message;
        message.where = "Qt";
        message.text = text.toStdString();
        message.severity = type;
        const bool warns = type == QtWarningMsg || type == QtCriticalMsg;
        // What the platform without a display cannot do is no fault of a test.
        if (!warns || message.text.rfind("This plugin does not support", 0) == 0) {
            std::fprintf(stderr, "%s\n", message.text.c_str());
            return;
        }
        s_guard->judge(message);
    }

    void OnTestStart(const testing::TestInfo&) override
    {
        m_unannounced.clear();
        s_guard = this;
        KsDebugError::setHandler(&MessageGuard::receive, this);
        qInstallMessageHandler(&MessageGuard::receiveFromQt);
    }

    void OnTestEnd(const testing::TestInfo&) override
    {
        for (const ExpectedMessages::Message& message : m_unannounced) {
            ADD_FAILURE() << "a message that the test did not announce, from \"" << message.where
                          << "\":\n"
                          << message.text;
        }
        m_unannounced.clear();
        qInstallMessageHandler(nullptr);
    }

private:
    void judge(const ExpectedMessages::Message& message)
    {
        for (ExpectedMessages* each = s_innermost; each; each = each->m_outer) {
            if (each->take(message)) return;
        }
        m_unannounced.push_back(message);
    }

    static MessageGuard* s_guard;
    std::vector<ExpectedMessages::Message> m_unannounced;
};

MessageGuard* MessageGuard::s_guard = nullptr;

ExpectedMessages::ExpectedMessages() : m_outer(s_innermost) { s_innermost = this; }

ExpectedMessages::ExpectedMessages(const char* where, const char* substring, int times,
                                   const char* file, int line)
    : ExpectedMessages()
{
    expect(where, substring, times, file, line);
}

ExpectedMessages::~ExpectedMessages()
{
    s_innermost = m_outer;
    for (const Pattern& pattern : m_patterns) {
        if (pattern.left > 0) {
            ADD_FAILURE_AT(pattern.file, pattern.line)
                << pattern.left << " announced message(s) did not come: from \"" << pattern.where
                << "\" with \"" << pattern.substring << "\"\ncame: " << text();
        }
    }
}

ExpectedMessages& ExpectedMessages::expect(const char* where, const char* substring, int times,
                                           const char* file, int line)
{
    m_patterns.push_back({where ? where : "", substring ? substring : "", times, file, line});
    return *this;
}

ExpectedMessages& ExpectedMessages::allow(const char* where, const char* substring)
{
    m_patterns.push_back({where ? where : "", substring ? substring : "", -1, "", 0});
    return *this;
}

bool ExpectedMessages::take(const Message& message)
{
    // What must come is counted before what merely may.
    for (bool counted : {true, false}) {
        for (Pattern& pattern : m_patterns) {
            if (counted ? pattern.left <= 0 : pattern.left >= 0) continue;
            if (!matches(pattern.where, message.where)) continue;
            if (message.text.find(pattern.substring) == std::string::npos) continue;
            if (counted) --pattern.left;
            m_messages.push_back(message);
            return true;
        }
    }
    return false;
}

std::string ExpectedMessages::text() const
{
    std::string all;
    for (const Message& message : m_messages) all += message.where + ": " + message.text + "\n";
    return all;
}

void installMessageGuard()
{
    // gtest owns its listeners.
    testing::UnitTest::GetInstance()->listeners().Append(new MessageGuard);
}

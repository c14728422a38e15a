#pragma once

#include <QApplication>

#include <memory>
#include <string>

/// The library and Qt, from start to end of a command.
class Session {
public:
    /// Where the windows are. Off screen no display is needed.
    enum Platform { OffScreen, Desktop };

    explicit Session(Platform platform);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// FALSE, with a message, if there is no display for the windows.
    bool isReady() const { return m_application != nullptr; }
    /// FALSE, with a message, if there is no such skin. The empty name chooses nothing.
    bool chooseSkin(const std::string& name);

private:
    std::unique_ptr<QApplication> m_application;
};

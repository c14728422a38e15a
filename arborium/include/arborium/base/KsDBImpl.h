#pragma once

#include <arborium/base/KsApi.h>

/// How the process runs.
class ARBORIUM_API KsDBImpl {
public:
    /// Whether other processes draw the same scene. FALSE unless an embedding application says so.
    static bool isRunningCluster() { return s_cluster; }
    static void setRunningCluster(bool running) { s_cluster = running; }
    /// Whether the process is a tool that only handles files. FALSE unless it says so.
    static bool isRunningToolMode() { return s_toolMode; }
    static void setRunningToolMode(bool running) { s_toolMode = running; }

    /// While set, no Qt widgets are wanted in this process. FALSE by default.
    static bool m_noLocalWidgets;

private:
    static bool s_cluster, s_toolMode;
};

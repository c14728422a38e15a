// The picture in docs/architecture.md: nothing knows what stands above it.

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

const QString root = QStringLiteral(FORMWEAVE_SOURCE_DIR) + "/";

/// Of a file of the layer by its folder and name; -1 for what is not of the layer.
int levelOf(const QString& folder, const QString& file)
{
    static const QMap<QString, int> folders{
        {"base", 0},    {"text", 1}, {"events", 1}, {"fields", 2}, {"sensors", 2}, {"nodes", 2},
        {"actions", 2}, {"kits", 2}, {"io", 2},     {"render", 3}, {"qt", 4}};
    static const QMap<QString, int> lower{{"KsMesh", 1},
                                          {"KsMeshBuilder", 1},
                                          {"KsTessellator", 1},
                                          {"KsDrawList", 2},
                                          {"KsTextureLoader", 2}};
    if (folder == "render") return lower.value(file.section('.', 0, 0), 3);
    return folders.value(folder, -1);
}

} // namespace

TEST(Layers, nothingIncludesWhatStandsAboveIt)
{
    const QRegularExpression include("#include [<\"](?:arborium/)?(\\w+)/(\\w+\\.h)[>\"]");
    int count = 0;
    for (const char* top : {"arborium/include/arborium/", "arborium/src/"}) {
        QDirIterator each(root + top, {"*.h", "*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
        while (each.hasNext()) {
            const QString path = each.next();
            const QString within = path.mid((root + top).size());
            if (!within.contains('/')) continue; // arborium.h includes all
            const int own = levelOf(within.section('/', 0, 0), QFileInfo(path).fileName());
            ASSERT_GE(own, 0) << qPrintable(within) << ": a folder that is not in the picture";
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            EXPECT_FALSE(text.contains("#include <formweave/")) << qPrintable(within);
            for (auto found = include.globalMatch(text); found.hasNext();) {
                const auto match = found.next();
                ++count;
                EXPECT_LE(levelOf(match.captured(1), match.captured(2)), own)
                    << qPrintable(within + " includes " + match.captured(0));
            }
        }
    }
    EXPECT_GT(count, 100);
}

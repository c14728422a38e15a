#include <arborium/arborium.h>

#include <gtest/gtest.h>

#include <QtCore/QtCore>

TEST(Umbrella, includesEveryPublicHeaderOfTheLayer)
{
    const QDir top(QStringLiteral(FORMWEAVE_SOURCE_DIR "/arborium/include/arborium"));
    QFile file(top.filePath("arborium.h"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    int headers = 0;
    for (QDirIterator each(top.path(), {"*.h"}, QDir::Files, QDirIterator::Subdirectories);
         each.hasNext(); ++headers) {
        const QString name = top.relativeFilePath(each.next());
        if (name == "arborium.h") continue;
        EXPECT_TRUE(text.contains("#include <arborium/" + name + ">\n")) << qPrintable(name);
    }
    EXPECT_GT(headers, 100);
}

#pragma once

// What tests look at inside of elements of any kind.

#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsOutput.h>
#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsText3.h>
#include <formweave/KsFormweave.h>

#include <gtest/gtest.h>
#include <string>
#include <vector>

using Strings = std::vector<std::string>;

/// Starts the library and ends it, for tests in which nothing is shown.
struct Library {
    Library() { KsFormweave::init(); }
    ~Library() { KsFormweave::finish(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

/// The one active element.
class Active : public KsFormweave {
public:
    using KsFormweave::m_lastActive;
    using KsFormweave::set3DCurrentActive;
};

inline std::string written(KsNode* node)
{
    KsWriteAction action;
    action.apply(node);
    return action.getOutput()->getBuffer();
}

inline std::string writtenBinary(KsNode* node)
{
    KsWriteAction action;
    action.getOutput()->setBinary(true);
    action.apply(node);
    return action.getOutput()->getBuffer();
}

/// The last node of a type among the children of a part; null without one.
template <class T> T* lastIn(KsFormweave* element, const char* part)
{
    T* found = nullptr;
    auto* group = static_cast<KsGroup*>(element->getAnyPart(part, false));
    for (int i = 0; group && i < group->getNumChildren(); ++i)
        if (auto* node = ksCast<T>(group->getChild(i))) found = node;
    return found;
}

/// The node that stands just before a part in its parent.
inline KsNode* nodeBefore(KsFormweave* element, const char* part, const char* parent = "geomSwitch")
{
    auto* group = static_cast<KsGroup*>(element->getAnyPart(parent, false));
    return group->getChild(group->findChild(element->getAnyPart(part, false)) - 1);
}

inline Strings textLines(const KsText3* text)
{
    Strings lines;
    for (int i = 0; text && i < text->string.getNum(); ++i)
        lines.push_back(text->string[i].toUtf8());
    return lines;
}

/// An element's table of parts from one on, as "name Type parent" and " public" for what programs may
/// set. Each begins as nothing, and none is a list.
inline Strings partRows(const KsFormweave* element, const char* first)
{
    const KsNodekitCatalog* catalog = element->getNodekitCatalog();
    Strings rows;
    for (int i = catalog->getPartNumber(first); i < catalog->getNumEntries(); ++i) {
        rows.push_back(catalog->getName(i).getString() + std::string(" ") +
                       catalog->getType(i).getName().getString() + " " +
                       catalog->getName(catalog->getParent(i)).getString() +
                       (catalog->isPublic(i) ? " public" : ""));
        EXPECT_TRUE(catalog->isNullByDefault(i));
        EXPECT_FALSE(catalog->isList(i));
    }
    return rows;
}

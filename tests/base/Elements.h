#pragma once

// What the tests of the dialog base share: a started library, elements that tell what is called on
// them, and reading, writing and measuring of trees.

#include <MessageGuard.h>
#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/base/KbViewportRegion.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Inside.h>
#include <formweave/KsDialogCheckBox.h>
#include <formweave/KsFormweave.h>

#include <gtest/gtest.h>

#include <QFont>
#include <QFontMetrics>
#include <QTemporaryDir>
#include <QWidget>
#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

using Calls = std::vector<std::string>;

/// The library is started for each test, and ended behind it.
class DialogBase : public testing::Test {
protected:
    void SetUp() override { KsFormweave::init(); }
    void TearDown() override { KsFormweave::finish(); }
};

/// The protected services of an element.
class Services : public KsFormweave {
public:
    using KsFormweave::convertFromCString;
    using KsFormweave::convertToCString;
    using KsFormweave::existWidget;
    using KsFormweave::getNumLines;
    using KsFormweave::insertTextTo3DText;
    using KsFormweave::m_lastActive;
    using KsFormweave::readDefaultSkinsParts;
    using KsFormweave::readFromFile;
    using KsFormweave::s_listData;
    using KsFormweave::set3DCurrentActive;
    using KsFormweave::setStringToText3;
    using KsFormweave::staleBox;
    using KsFormweave::wrap3DTextLine;
};

/// A check box that tells which of its operations are called.
class ProbeBox : public KsDialogCheckBox {
public:
    using KsFormweave::addAuditor;
    using KsFormweave::apply3DTranslation;
    using KsFormweave::compute3DDepth;
    using KsFormweave::get3DParentTranslation;
    using KsFormweave::getAuditor;
    using KsFormweave::getAuditorListLength;
    using KsFormweave::getLabelCachedBBox;
    using KsFormweave::isLabelCachedBBox;
    using KsFormweave::m_bboxAction;
    using KsFormweave::m_build2D;
    using KsFormweave::m_enableSensor;
    using KsFormweave::m_material;
    using KsFormweave::m_matrixAction;
    using KsFormweave::m_parentTranslationNode;
    using KsFormweave::m_parentWidget;
    using KsFormweave::m_pickStyle;
    using KsFormweave::m_searchAction;
    using KsFormweave::measure3DText;
    using KsFormweave::removeAuditor;
    using KsFormweave::setLabelCacheBBox;
    using KsFormweave::undoTransformMatrix;
    using KsFormweave::writeNode;

    using KsDialogComponent::m_3DDepth;
    using KsDialogComponent::m_componentInitSize;
    using KsDialogComponent::m_componentSize;
    using KsDialogComponent::m_defaultMax;
    using KsDialogComponent::m_defaultMin;
    using KsDialogComponent::m_defaultSize;
    using KsDialogComponent::m_labelInitSize;
    using KsDialogComponent::m_labelSize;
    using KsDialogComponent::m_layout;
    using KsDialogComponent::m_mainScale;
    using KsDialogComponent::m_mainTranslation;
    using KsDialogComponent::m_position;
    using KsDialogComponent::m_spacer;
    using KsDialogComponent::m_undoTransform;

    Calls calls;
    int builds = 0;

    void build(int build2D, int w = 0, int h = 0, QWidget* parent = nullptr)
    {
        KbVec2i32 size(w, h), position(0, 0);
        buildWidget(parent, size, position, build2D);
    }
    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override
    {
        ++builds;
        KsDialogCheckBox::buildWidget(parent, size, position, build2D);
    }
    void changeEnable() override
    {
        calls.emplace_back("changeEnable");
        KsDialogCheckBox::changeEnable();
    }
    void changeLabel() override
    {
        calls.emplace_back("changeLabel");
        KsDialogCheckBox::changeLabel();
    }
    void changeLabelAlignment() override
    {
        calls.emplace_back("changeLabelAlignment");
        KsDialogCheckBox::changeLabelAlignment();
    }
    void changeLabelVisibility() override
    {
        calls.emplace_back("changeLabelVisibility");
        KsDialogCheckBox::changeLabelVisibility();
    }
    void changeEdgeStyle() override
    {
        calls.emplace_back("changeEdgeStyle");
        KsDialogCheckBox::changeEdgeStyle();
    }
    void changeWidth() override
    {
        calls.emplace_back("changeWidth");
        KsDialogCheckBox::changeWidth();
    }
    void changeHeight() override
    {
        calls.emplace_back("changeHeight");
        KsDialogCheckBox::changeHeight();
    }
    void changeMinMaxSize() override
    {
        calls.emplace_back("changeMinMaxSize");
        KsDialogCheckBox::changeMinMaxSize();
    }
    void change3DEnable() override
    {
        calls.emplace_back("change3DEnable");
        KsDialogCheckBox::change3DEnable();
    }
    void change3DLabel() override
    {
        calls.emplace_back("change3DLabel");
        KsDialogCheckBox::change3DLabel();
    }
    void change3DLabelAlignment() override
    {
        calls.emplace_back("change3DLabelAlignment");
        KsDialogCheckBox::change3DLabelAlignment();
    }
    void change3DLabelVisibility() override
    {
        calls.emplace_back("change3DLabelVisibility");
        KsDialogCheckBox::change3DLabelVisibility();
    }
    void change3DEdgeStyle() override
    {
        calls.emplace_back("change3DEdgeStyle");
        KsDialogCheckBox::change3DEdgeStyle();
    }
    void set3DInactive() override
    {
        calls.emplace_back("set3DInactive");
        KsDialogCheckBox::set3DInactive();
    }
    /// The calls since the last look.
    Calls take()
    {
        Calls taken;
        taken.swap(calls);
        return taken;
    }
};

/// A component of no concrete kind.
class PlainComponent : public KsDialogComponent {
public:
    using KsDialogComponent::get2DComponentSize;
    using KsDialogComponent::getDefaultState;
    using KsDialogComponent::m_defaultSize;
    using KsDialogComponent::m_labelSize;
    using KsDialogComponent::setSize;
};

inline void build(KsFormweave* element, int build2D, int w = 0, int h = 0,
                  QWidget* parent = nullptr)
{
    KbVec2i32 size(w, h), position(0, 0);
    element->buildWidget(parent, size, position, build2D);
}

/// What a viewer does before it draws: dialogs build themselves.
inline KbBox3f measure(KsNode* scene)
{
    KsGetBoundingBoxAction action{KbViewportRegion()};
    action.apply(scene);
    return action.getBoundingBox();
}

inline KsRef<KsSeparator> readScene(const std::string& text)
{
    KsInput in;
    in.setBuffer(text.data(), text.size());
    return KsRef<KsSeparator>(KsDB::readAll(&in));
}

/// The first node of a text.
template <class T> KsRef<T> readNode(const std::string& text)
{
    const KsRef<KsSeparator> scene = readScene(text);
    return KsRef<T>(scene && scene->getNumChildren() ? ksCast<T>(scene->getChild(0)) : nullptr);
}

inline void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    ASSERT_TRUE(file.good()) << path;
}

inline std::string readText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline QFontMetrics metrics() { return QFontMetrics(KsFormweave::getFormweaveFont()); }

/// A folder that goes with the test.
class Folder {
public:
    std::string path(const std::string& name) const
    {
        return m_dir.filePath(QString::fromStdString(name)).toStdString();
    }
    std::string file(const std::string& name, const std::string& text) const
    {
        writeFile(path(name), text);
        return path(name);
    }
    std::string path() const { return m_dir.path().toStdString(); }

private:
    QTemporaryDir m_dir;
};

constexpr const char* header = "#Arborium V2.1 ascii\n";

inline void PrintTo(const KbVec2i32& v, std::ostream* out) { *out << v[0] << " " << v[1]; }

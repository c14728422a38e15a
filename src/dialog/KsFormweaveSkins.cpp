// Skins: where they are found, how a family's parts are read once and swapped.

#include "KsSkinFamily.h"

#include <arborium/actions/KsSearchAction.h>
#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbStringList.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsNodeList.h>
#include <arborium/nodes/KsSeparator.h>
#include <formweave/KsDialogCheckBox.h>
#include <formweave/KsDialogComboBox.h>
#include <formweave/KsDialogEditText.h>
#include <formweave/KsDialogPushButton.h>
#include <formweave/KsDialogRadioButtons.h>
#include <formweave/KsDialogSeparator.h>
#include <formweave/KsDialogSlider.h>
#include <formweave/KsFormweave.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsMenuCheckBox.h>
#include <formweave/KsMenuPopup.h>
#include <formweave/KsMenuPushButton.h>
#include <formweave/KsMenuRadioButtons.h>
#include <formweave/KsMenuSeparator.h>
#include <formweave/KsTabDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <algorithm>
#include <cstring>
#include <unordered_set>

namespace {

constexpr const char* temporaryPrefix = "_Lmn_Tmp_";

KsSkinFamily& textFamily()
{
    static auto& family = *new KsSkinFamily{
        "TextProperties.arb", &KsFormweave::TextProperties, {"DialogTextProperties"}};
    return family;
}

std::vector<KsSkinFamily::Get>& families()
{
    static auto& all = *new std::vector<KsSkinFamily::Get>;
    return all;
}
const bool textIsEnrolled = KsSkinFamily::enrol(&textFamily);

// Held for good: the parts stay known by their names.
KsNodeList& skinRoots()
{
    static auto& roots = *new KsNodeList;
    return roots;
}

// Names from the environment and from programs are often bytes: where these are UTF-8 they are taken
// as such, so that parts of a path can be put together whichever way they are kept.
KbString decoded(const KbString& text)
{
    if (text.isUnicode()) return text;
    const KbString characters = KbString::fromUtf8(text.toLatin1());
    return characters.toUtf8() == text.toLatin1() ? characters : text;
}

// The named groups of what was read, whatever name they have now. Only compared: the roots hold them.
std::unordered_set<const KsNode*>& skinParts()
{
    static auto& parts = *new std::unordered_set<const KsNode*>;
    return parts;
}

void keepSkin(KsGroup* root)
{
    skinRoots().append(root);
    std::unordered_set<KsGroup*> met;
    std::vector<KsGroup*> open{root};
    while (!open.empty()) {
        KsGroup* group = open.back();
        open.pop_back();
        if (!met.insert(group).second) continue;
        if (!group->getName().isEmpty()) skinParts().insert(group);
        for (int i = 0; i < group->getNumChildren(); ++i)
            if (auto* below = ksCast<KsGroup>(group->getChild(i))) open.push_back(below);
    }
}

// An application's own nodes may bear the name of a part: that of a skin is meant.
enum class Among { Skins, SkinsFirst };

KsGroup* groupNamed(const KbString& name, Among among)
{
    KsNodeList named;
    KsNode::getByName(KbName(name.getString()), named);
    KsGroup* other = nullptr;
    for (int i = 0; i < named.getLength(); ++i) {
        auto* group = ksCast<KsGroup>(named[i]);
        if (group && skinParts().count(group)) return group;
        if (!other) other = group;
    }
    return among == Among::SkinsFirst ? other : nullptr;
}

void freePart(const KbString& name, Among among)
{
    KsGroup* part = groupNamed(name, among);
    if (!part) return;
    part->setName(KbName((KbString(temporaryPrefix) + name).getString()));
    part->removeAllChildren();
}

void loadPart(const KbString& name, Among among)
{
    KsGroup* old = groupNamed(KbString(temporaryPrefix) + name, among);
    KsGroup* fresh = groupNamed(name, among);
    if (!old || !fresh) return;
    for (int i = 0; i < fresh->getNumChildren(); ++i) old->addChild(fresh->getChild(i));
    fresh->setName(KbName());
    old->setName(KbName(name.getString()));
}

} // namespace

char* KsFormweave::TextProperties =
    const_cast<char*>(KS_SKIN_PART("DialogTextProperties", "  BaseColor { rgb 0 0 0 }\n"
                                                           "  Translation { translation 0 0 0.1 }\n"
                                                           "  Font { size 11 name \"Tahoma\" }\n"));

int KsFormweave::isSkinLoaded() { return textFamily().loaded; }

void KsFormweave::setSkinLoaded(int loaded) { textFamily().loaded = loaded; }

KbString& KsFormweave::s_skinsPath()
{
    static auto& path = *new KbString;
    return path;
}

KbString KsFormweave::getSkinsDirectories()
{
    KbString directories;
    const auto value = [](const char* name) { return decoded(KsPreferences::getString(name)); };
    const KbString home = value("ARBHOME");
    if (!home.isEmpty()) directories = home + "/data/Formweave/skins/";
    const KbString own = value("FORMWEAVE_SKINS_DIR");
    if (!own.isEmpty()) {
        if (!directories.isEmpty()) directories += ";";
        directories += own;
    }
    return directories;
}

void KsFormweave::setSkinsDirectories(KbString directories)
{
    KsPreferences::setString("FORMWEAVE_SKINS_DIR", directories);
}

KbString KsFormweave::getSkinsDirectory() { return getSkinsDirectories(); }

int KsFormweave::setSkinsDirectory(KbString path)
{
    setSkin(path);
    return 1;
}

void KsFormweave::setSkin(KbString path)
{
    const auto choose = [](const KbString& candidate) {
        if (KbFileHelper::isAccessible(candidate, 0) != 1) return false;
        s_skinsPath() = candidate;
        change3DSkin();
        return true;
    };
    if (path.isEmpty() || choose(path) || choose(KbString("./") + path)) return;
    const KbStringList directories =
        KbStringList::split(KbFileHelper::toUnixPath(getSkinsDirectories()), ";");
    for (int i = 0; i < directories.getLength(); ++i) {
        if (!directories[i].isEmpty() && choose(directories[i] + "/" + decoded(path))) return;
    }
}

void KsFormweave::chooseSkin()
{
    if (s_skinsPath().isEmpty()) setSkin(KsPreferences::getString("FORMWEAVE_SKIN", "default"));
}

const KsNodeList& KsFormweave::getSkinRoots() { return skinRoots(); }

void KsFormweave::readDefaultSkinsParts(const KbString& fileName, const char* builtIn)
{
    if (KsGroup* root = readFromFile(fileName)) {
        keepSkin(root);
        return;
    }
    static bool firstMissing = true;
    KbString message = KbString("The skin file : <") + fileName + "> cannot be found.";
    if (firstMissing) {
        message += "\nIMPORTANT : Internal Formweave component skin is loaded to prevent from your "
                   "application to exit.\nFor loading your own Formweave skins, please verify the "
                   "FORMWEAVE_SKINS_DIR environment variable.";
        firstMissing = false;
    }
    KsDebugError::post("Formweave::readDefaultSkinsParts", "%s", message.toUtf8().c_str());
    KsInput in;
    in.setBuffer(builtIn, std::strlen(builtIn));
    if (KsGroup* root = KsDB::readAll(&in)) keepSkin(root);
}

void KsFormweave::free3DSkin(KbString partName) { freePart(partName, Among::SkinsFirst); }

void KsFormweave::load3DSkin(KbString partName) { loadPart(partName, Among::SkinsFirst); }

void KsFormweave::setPartFromSkin(const char* part, const char* skinName)
{
    setPartAsDefault(part, groupNamed(skinName, Among::Skins), true);
}

void KsSkinFamily::loadOnce()
{
    if (!firstUse) return;
    // The skin is chosen first: choosing one loads every family, and no file is read twice.
    KsFormweave::chooseSkin();
    if (loaded) return;
    read();
    loaded = 1;
    firstUse = 0;
}

bool KsSkinFamily::enrol(Get family)
{
    families().push_back(family);
    return true;
}

bool KsSkinFamily::isPart(std::string_view name)
{
    return std::any_of(families().begin(), families().end(), [name](Get family) {
        const auto& all = family().parts;
        return std::find(all.begin(), all.end(), name) != all.end();
    });
}

void KsSkinFamily::read()
{
    const int before = skinRoots().getLength();
    KsFormweave::readDefaultSkinsParts(file, *builtIn);
    if (skinRoots().getLength() > before) unnameStrangers(skinRoots().get(before));
}

void KsSkinFamily::unnameStrangers(KsNode* root) const
{
    KsSearchAction search;
    search.setType(KsNode::getClassTypeId());
    search.setInterest(KsSearchAction::ALL);
    search.setSearchingAll(true);
    search.apply(root);
    std::vector<const KsNode*> met(parts.size());
    for (int i = 0; i < search.getPaths().getLength(); ++i) {
        KsNode* node = static_cast<KsFullPath*>(search.getPaths()[i])->getTail();
        const std::string_view name = node->getName().view();
        if (name.empty()) continue;
        const auto part = std::find(parts.begin(), parts.end(), name);
        if (part != parts.end() && node->isOfType(KsGroup::getClassTypeId())) {
            const KsNode*& first = met[static_cast<std::size_t>(part - parts.begin())];
            if (!first) first = node;
            if (first == node) continue;
        } else if (!isPart(name) &&
                   name.substr(0, std::strlen(temporaryPrefix)) != temporaryPrefix) {
            continue;
        }
        node->setName(KbName());
    }
}

void KsSkinFamily::change()
{
    for (const char* part : parts) freePart(part, Among::Skins);
    read();
    for (const char* part : parts) loadPart(part, Among::Skins);
    loaded = 1;
}

void KsFormweave::loadFontProperties() { textFamily().loadOnce(); }

void KsFormweave::change3DSkin()
{
    textFamily().change();
    KsMenuItem::change3DSkin();
    KsMenuCheckBox::change3DSkin();
    KsMenuPopup::change3DSkin();
    KsMenuPushButton::change3DSkin();
    KsMenuRadioButtons::change3DSkin();
    KsMenuSeparator::change3DSkin();
    KsDialogComponent::change3DSkin();
    KsDialogCheckBox::change3DSkin();
    KsDialogComboBox::change3DSkin();
    KsDialogRadioButtons::change3DSkin();
    KsDialogEditText::change3DSkin();
    KsTabDialog::change3DSkin();
    KsDialogPushButton::change3DSkin();
    KsDialogSeparator::change3DSkin();
    KsDialogSlider::change3DSkin();
    KsMenuBar::change3DSkin();
    KsTopLevelDialog::change3DSkin();
    refreshAll3DSkins();
}

// The editor in a scene.

#include "KsLayouts.h"
#include "KsSkinFamily.h"
#include "KsTypedKey.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KbLine.h>
#include <arborium/base/KbLineProjector.h>
#include <arborium/base/KsLimits.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsDialogEditText.h>

#include <algorithm>
#include <limits>
#include <utility>

KS_SKIN_SOURCE(KsDialogEditText, DialogEditText, "DialogEditText.arb", "DialogEditTextFrame",
               "DialogEditTextEditingFrame", "DialogEditTextDownButtonPressed",
               "DialogEditTextDownButtonReleased", "DialogEditTextUpButtonPressed",
               "DialogEditTextUpButtonReleased", "DialogEditTextScrollFrame",
               "DialogEditTextCursorFrame", "DialogEditTextCaretFrame")

char* KsDialogEditText::DialogEditText = const_cast<char*>(
    KS_SKIN_PART("DialogEditTextFrame", KS_SKIN_CLOSED_BOX("1 1 1"))
        KS_SKIN_PART("DialogEditTextEditingFrame", KS_SKIN_CLOSED_BOX("1 0.6 0.6")) KS_SKIN_PART(
            "DialogEditTextDownButtonPressed", KS_SKIN_LOW_BOX("0.7 0.8 0.7"))
            KS_SKIN_PART("DialogEditTextDownButtonReleased", KS_SKIN_CLOSED_BOX("1 0.6 0.6"))
                KS_SKIN_PART("DialogEditTextUpButtonPressed", KS_SKIN_LOW_BOX("0.7 0.8 0.7"))
                    KS_SKIN_PART("DialogEditTextUpButtonReleased", KS_SKIN_CLOSED_BOX("1 0.6 0.6"))
                        KS_SKIN_PART("DialogEditTextScrollFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 0.7"))
                            KS_SKIN_PART("DialogEditTextCursorFrame",
                                         KS_SKIN_CLOSED_BOX("0.7 0.9 0.7"))
                                KS_SKIN_PART("DialogEditTextCaretFrame", KS_SKIN_LOW_BOX("1 0 0")));

namespace {

constexpr float barWidth = 14;  // of a scroll bar and its buttons
constexpr float textInset = 4;  // between the frame's edge and the text
constexpr float lineFrame = 22; // the height of a frame of one line
constexpr float thumbSlack = 8; // of a thumb's way, which the text is moved beyond
// A shape of no size has no inside, and cannot be pressed.
constexpr float leastSize = 1;

float heightOf(const KbBox3f& box) { return box.getMax()[1] - box.getMin()[1]; }
float widthOf(const KbBox3f& box) { return box.getMax()[0] - box.getMin()[0]; }

/// What is moved `way` while the thumb moves along `track`.
float ratio(float way, float track) { return track > thumbSlack ? way / (track - thumbSlack) : 0; }

/// The part of `track` that stands for the `visible` part of `all`.
float thumbSize(float track, float all, float visible)
{
    if (!(all > 0)) return track;
    return std::max(std::min(track / all * visible, track), std::min(leastSize, track));
}

} // namespace

struct KsDialogEditText::ScrollBarParts {
    const char *firstSep, *lastSep, *firstSwitch, *lastSwitch, *sep, *back, *cursor;
};

int KsDialogEditText::zoneWidth3D() const
{
    return size3D()[0] - 2 * frameMargin - (labelVisibility ? m_labelSize[0] + zoneGap : 0);
}

float KsDialogEditText::wrapWidth3D() const
{
    return static_cast<float>(zoneWidth3D()) - barWidth - 2 * textInset;
}

KsGroup* KsDialogEditText::textProperties()
{
    return static_cast<KsGroup*>(getAnyPart("textProp", false));
}

const KbBox3f& KsDialogEditText::editBox3D() { return textBox3D(m_text, "textProp"); }

// Making it.

void KsDialogEditText::createScrollBar(ScrollBar& bar, const ScrollBarParts& parts)
{
    const auto insertFirst = [this](KsNode* node, const char* part) {
        static_cast<KsGroup*>(getAnyPart(part, true))->insertChild(node, 0);
    };
    insertFirst(m_buttonScale.get(), parts.firstSep);
    insertFirst(m_buttonScale.get(), parts.lastSep);
    putFirst(bar.firstTranslation, parts.firstSep);
    putFirst(bar.lastTranslation, parts.lastSep);
    putFirst(bar.backTranslation, parts.sep);
    putFirst(bar.scale, parts.back);
    putBefore(bar.undo, parts.cursor);
    putFirst(bar.thumb, parts.cursor);
    putFirst(bar.rest, parts.cursor);
    putFirst(bar.position, parts.cursor);
    setSwitchValue(getAnyPart(parts.firstSwitch, false), 0);
    setSwitchValue(getAnyPart(parts.lastSwitch, false), 0);
}

void KsDialogEditText::create3DControl()
{
    dress3D(&skinFamily(), {{"labelProp", "DialogTextProperties"},
                            {"frame", "DialogEditTextFrame"},
                            {"editFrame", "DialogEditTextEditingFrame"},
                            {"textProp", "DialogTextProperties"},
                            {"downReleased", "DialogEditTextDownButtonReleased"},
                            {"downPressed", "DialogEditTextDownButtonPressed"},
                            {"upReleased", "DialogEditTextUpButtonReleased"},
                            {"upPressed", "DialogEditTextUpButtonPressed"},
                            {"scrollVFrame", "DialogEditTextScrollFrame"},
                            {"cursorVFrame", "DialogEditTextCursorFrame"},
                            {"leftReleased", "DialogEditTextDownButtonReleased"},
                            {"leftPressed", "DialogEditTextDownButtonPressed"},
                            {"rightReleased", "DialogEditTextUpButtonReleased"},
                            {"rightPressed", "DialogEditTextUpButtonPressed"},
                            {"scrollHFrame", "DialogEditTextScrollFrame"},
                            {"cursorHFrame", "DialogEditTextCursorFrame"}});
    setSwitchValue(getAnyPart("frameSwitch", false), 0);
    create3DLabel();
    putFirst(m_frame.scale, "frameSep");
    putFirst(m_frame.translation, "frameSep");
    putBefore(m_frameUndo, "textSep");
    create3DText(m_text, "textSep");
    putFirst(m_textScroll, "textSep");
    putFirst(m_clipTop, "textSep");
    putFirst(m_clipBottom, "textSep");
    putFirst(m_clipRight, "textSep");
    putFirst(m_clipLeft, "textSep");
    m_buttonScale = new KsScale;
    m_buttonScale->scaleFactor = KbVec3f(barWidth, barWidth, 1);
    createScrollBar(m_scrollV, {"downSep", "upSep", "downSwitch", "upSwitch", "scrollVSep",
                                "scrollVBack", "cursorVSep"});
    createScrollBar(m_scrollH, {"leftSep", "rightSep", "leftSwitch", "rightSwitch", "scrollHSep",
                                "scrollHBack", "cursorHSep"});
    show3DForm();
    change3DEditText();

    addStartCallback(startCB3D);
    addMotionCallback(motionCB3D);
    addFinishCallback(finishCB3D);
    m_editMode = 0;
    m_lineProjector = std::make_unique<KbLineProjector>();
    putFirst(m_keyCallback, "frameSep");
    m_keyCallback->addEventCallback(KsKeyboardEvent::getClassTypeId(), processKeyEvents, this);
    setBuilt3D(1);
    m_text.box = staleBox();
    putCaretAtEnd();
}

void KsDialogEditText::show3DForm()
{
    const auto show = [this](const char* part, bool shown) {
        setSwitchValue(getAnyPart(part, false), shown ? KsSwitch::ALL : KsSwitch::NONE);
    };
    show("scrollVSwitch", multiLine);
    show("scrollHSwitch", multiLine && !wrapLine);
}

void KsDialogEditText::change3DEditable()
{
    if (editable || !m_editMode) return;
    m_editMode = 0;
    setSwitchValue(getAnyPart("frameSwitch", false), 0);
}

void KsDialogEditText::change3DLayout()
{
    if (!m_text.text) return;
    show3DForm();
    for (ScrollBar* bar : {&m_scrollV, &m_scrollH}) bar->position->translation = KbVec3f(0, 0, 0);
    m_textScroll->translation = KbVec3f(0, 0, 0);
    m_wrappedAt = -1;
    update3DControl();
}

void KsDialogEditText::refresh3DSkin()
{
    m_text.box = staleBox();
    m_wrappedAt = -1; // the letters may have another width
    KsDialogComponent::refresh3DSkin();
}

// The lines.

void KsDialogEditText::change3DEditText()
{
    if (!m_text.text) return;
    const std::string text = convertToCString(editText, nullptr).toLatin1();
    const auto most = static_cast<std::size_t>(std::max(KsLimits::current().textLines, 1));
    const KsRef<KsText3> stretch(new KsText3);
    std::vector<KbString> lines;
    m_wrappedAt = wrapWidth3D();
    for (std::size_t at = 0; at < text.size() && lines.size() < most;) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        stretch->string.setNum(0);
        insertTextTo3DText(KbString(text.substr(at, end - at)), stretch.get(), 0, -1);
        if (isWrapped() && end > at)
            wrap3DTextLine(stretch.get(), 0, m_wrappedAt, textProperties(), this);
        const std::vector<KbString>& pieces = stretch->string.values();
        const std::size_t room = std::min(pieces.size(), most - lines.size());
        lines.insert(lines.end(), pieces.begin(),
                     pieces.begin() + static_cast<std::ptrdiff_t>(room));
        at = end + 1;
        if (at < text.size() && text[at] == '\r') ++at;
    }
    m_text.text->string.assign(std::move(lines));
    if (!multiLine && isBuilt3D()) {
        // A frame of one line always shows the end of its text.
        m_text.box = staleBox();
        update3DTextPosition();
    }
}

void KsDialogEditText::putCaretAtEnd()
{
    m_caretLine = std::max(m_text.text->string.getNum() - 1, 0);
}

void KsDialogEditText::bringCaretIntoRange()
{
    if (!m_text.text) return;
    const int count = m_text.text->string.getNum();
    // Behind a closing line break the next line need not be there yet.
    const int last = editText.getValue().endsWith("\n") ? count : count - 1;
    m_caretLine = std::max(std::min(m_caretLine, last), 0);
}

/// What was typed in the window is typed on at its end.
void KsDialogEditText::showWindowText3D()
{
    change3DEditText();
    m_caretLine = std::numeric_limits<int>::max();
    bringCaretIntoRange();
}

void KsDialogEditText::insertCharTo3DText(char c)
{
    bringCaretIntoRange();
    const int oldLine = m_caretLine;
    if (m_text.text) {
        m_caretLine = insertTextTo3DText(KbString(c), m_text.text.get(), m_caretLine, -1);
        if (isWrapped())
            m_caretLine = wrap3DTextLine(m_text.text.get(), m_caretLine, wrapWidth3D(),
                                         textProperties(), this);
    }
    applyTyping(editText.getValue() + c, oldLine);
}

void KsDialogEditText::removeCharIn3DText()
{
    bringCaretIntoRange();
    const KbString& text = editText.getValue();
    const int n = text.getLength();
    const bool behindBreak = n >= 2 && text[n - 2] == u'\n';
    const int oldLine = m_caretLine;
    if (m_text.text) {
        KsMFString& lines = m_text.text->string;
        const KbString line = lines[m_caretLine];
        const int m = line.getLength();
        if (m >= 2) {
            lines.set1Value(m_caretLine, line.getSubString(0, m - 1));
        } else if (m == 1 && (behindBreak || !multiLine)) {
            lines.set1Value(m_caretLine, KbString());
        } else if (multiLine || m_caretLine > 0) {
            lines.deleteValues(m_caretLine);
            m_caretLine = std::max(m_caretLine - 1, 0);
        }
    }
    applyTyping(n < 2 ? KbString() : text.getSubString(0, n - 1), oldLine);
}

void KsDialogEditText::applyTyping(const KbString& text, int oldLine)
{
    const KsKeepAlive keep(this);
    ksWriteSilently(m_editTextSensor, editText, text);
    if (isBuilt2D()) showTypedText2D();
    if (!trigOnEnter) applyDlgCptAuditor();
    if (isBuilt3D()) update3DTextCache(oldLine);
}

void KsDialogEditText::update3DTextCache(int oldLine)
{
    m_text.box = staleBox();
    if (!multiLine || oldLine != m_caretLine) {
        if (multiLine) {
            update3DScrollBars();
            update3DCursors();
        }
        update3DTextPosition();
    }
    if (multiLine) follow3DTyping();
}

// Places and sizes.

void KsDialogEditText::update3DControl()
{
    if (!m_text.text) return;
    if (isWrapped() ? m_wrappedAt != wrapWidth3D() : m_wrappedAt < 0) {
        change3DEditText();
        m_text.box = staleBox();
        putCaretAtEnd();
    }
    const KbVec2i32 size = size3D();
    const auto w = static_cast<float>(zoneWidth3D());
    float h = static_cast<float>(size[1] - 2 * frameMargin), sv = barWidth, sh = 0;
    if (!multiLine) {
        h = lineFrame;
        sv = 0;
    } else if (!wrapLine) {
        sh = barWidth;
    }
    place3DFrame(m_frame, (static_cast<float>(size[0] - 2 * frameMargin) - w - sv) / 2, sh / 2,
                 std::max(w - sv, leastSize), std::max(h - sh, leastSize));
    undoTransformMatrix(getAnyPart("frameSep", false), m_frameUndo.get());
    const float a = (sv - w) / 2 + textInset, b = (sh - h) / 2 + textInset;
    m_clipRight->plane = KbPlane(KbVec3f(-1, 0, 0), a);
    m_clipLeft->plane = KbPlane(KbVec3f(1, 0, 0), a);
    m_clipTop->plane = KbPlane(KbVec3f(0, -1, 0), b);
    m_clipBottom->plane = KbPlane(KbVec3f(0, 1, 0), b);
    if (multiLine) {
        update3DScrollBars();
        update3DCursors();
    }
    update3DTextPosition();
}

float KsDialogEditText::lineWidth3D(int line)
{
    const KsRef<KsText3> text(new KsText3);
    text->string = KbString(m_text.text->string[line]);
    return widthOf(measure3DText(textProperties(), text.get()));
}

void KsDialogEditText::update3DTextPosition()
{
    const KbBox3f box = editBox3D();
    const auto e = static_cast<float>(zoneWidth3D());
    const KbVec3f frame = m_frame.scale->scaleFactor.getValue();
    const int lines = m_text.text->string.getNum();
    // Of several lines a frame of one shows the last, and nothing of the others.
    const bool cut = multiLine || lines > 1;
    m_clipTop->on = cut;
    m_clipBottom->on = cut;
    if (multiLine) {
        m_text.translation->translation =
            KbVec3f(textInset - frame[0] / 2, (frame[1] - 2 * textInset) / 2 - box.getMax()[1], 0);
        return;
    }
    const float t = lines > 1 ? lineWidth3D(lines - 1) : widthOf(box), a = e - 2 * textInset;
    float x = textInset - e / 2;
    if (a <= t) x = (-textInset - a / 2) - (t - a);
    x = static_cast<float>(static_cast<int>(x));
    float y = -(box.getMax()[1] + box.getMin()[1]) / 2;
    if (lines > 1) y += heightOf(box) / 2 - heightOf(box) / static_cast<float>(2 * lines);
    m_text.translation->translation = KbVec3f(x, y, 0);
}

void KsDialogEditText::update3DScrollBars()
{
    const KbVec2i32 size = size3D();
    const auto h = static_cast<float>(size[1] - 2 * frameMargin);
    const float x = (static_cast<float>(size[0]) - 20) / 2, y = (h - barWidth) / 2;
    const float hb = wrapLine ? 0 : barWidth;
    m_scrollV.lastTranslation->translation = KbVec3f(x, y, 0);
    m_scrollV.firstTranslation->translation = KbVec3f(x, -y + hb, 0);
    m_scrollV.backTranslation->translation = KbVec3f(x, hb / 2, 0);
    m_scrollV.scale->scaleFactor = KbVec3f(barWidth, std::max(h - 2 * barWidth - hb, leastSize), 1);
    undoTransformMatrix(getAnyPart("scrollVBack", false), m_scrollV.undo.get());
    if (wrapLine) return;
    const float cx = m_frame.translation->translation.getValue()[0];
    const float fw = m_frame.scale->scaleFactor.getValue()[0] - barWidth;
    m_scrollH.firstTranslation->translation = KbVec3f(cx - fw / 2, -y, 0);
    m_scrollH.lastTranslation->translation = KbVec3f(cx + fw / 2, -y, 0);
    m_scrollH.backTranslation->translation = KbVec3f(cx, -y, 0);
    m_scrollH.scale->scaleFactor = KbVec3f(std::max(fw - barWidth, leastSize), barWidth, 1);
    undoTransformMatrix(getAnyPart("scrollHBack", false), m_scrollH.undo.get());
}

void KsDialogEditText::update3DCursors()
{
    const KbBox3f box = editBox3D();
    const float track = m_scrollV.scale->scaleFactor.getValue()[1];
    const float tall = thumbSize(track, heightOf(box), static_cast<float>(size3D()[1]) - barWidth);
    m_scrollV.thumb->scaleFactor = KbVec3f(barWidth, tall, 1);
    m_scrollV.rest->translation = KbVec3f(0, (track - tall) / 2, 0);
    if (!wrapLine) update3DSideCursor();
    // A thumb that grew must not reach beyond its track.
    place3DThumb(m_scrollV.position->translation.getValue()[1]);
    update3DTextScrollPosition();
}

void KsDialogEditText::update3DSideCursor()
{
    const float way = m_scrollH.scale->scaleFactor.getValue()[0];
    const float wide = thumbSize(way, widthOf(editBox3D()), wrapWidth3D());
    m_scrollH.thumb->scaleFactor = KbVec3f(wide, barWidth, 1);
    m_scrollH.rest->translation = KbVec3f(-(way - wide) / 2, 0, 0);
    place3DSideThumb(m_scrollH.position->translation.getValue()[0]);
}

float KsDialogEditText::sideScroll3D()
{
    return m_scrollH.position->translation.getValue()[0] *
           ratio(widthOf(editBox3D()), m_scrollH.scale->scaleFactor.getValue()[0]);
}

void KsDialogEditText::update3DTextScrollPosition()
{
    const float dy = m_scrollV.position->translation.getValue()[1] *
                     ratio(heightOf(editBox3D()), m_scrollV.scale->scaleFactor.getValue()[1]);
    m_textScroll->translation = KbVec3f(-sideScroll3D(), -dy, 0);
}

void KsDialogEditText::place3DThumb(float y)
{
    const float lowest =
        m_scrollV.thumb->scaleFactor.getValue()[1] - m_scrollV.scale->scaleFactor.getValue()[1];
    m_scrollV.position->translation = KbVec3f(0, std::max(std::min(y, 0.0f), lowest), 0);
}

void KsDialogEditText::place3DSideThumb(float x)
{
    const float rightmost =
        m_scrollH.scale->scaleFactor.getValue()[0] - m_scrollH.thumb->scaleFactor.getValue()[0];
    m_scrollH.position->translation = KbVec3f(std::min(std::max(x, 0.0f), rightmost), 0, 0);
}

void KsDialogEditText::move3DCursor(float delta)
{
    if (!isBuilt3D()) return;
    place3DThumb(m_scrollV.start[1] + delta);
    update3DTextScrollPosition();
}

/// Brings the line that is typed on into view.
void KsDialogEditText::follow3DTyping()
{
    if (!wrapLine) {
        update3DSideCursor();
        m_textScroll->translation =
            KbVec3f(-sideScroll3D(), m_textScroll->translation.getValue()[1], 0);
    }
    if (std::exchange(m_thumbDragged, false)) return;
    const KbBox3f box = editBox3D();
    const KbVec3f frame = m_frame.scale->scaleFactor.getValue();
    const auto count = static_cast<float>(std::max(m_text.text->string.getNum(), 1));
    const float step = heightOf(box) / count;
    const float visible = frame[1] - 2 * textInset;
    const float top = std::min(static_cast<float>(m_caretLine), count - 1) * step;
    KbVec3f scroll = m_textScroll->translation;
    const float y = std::max(std::min(scroll[1], top), top + step - visible);
    if (y != scroll[1]) {
        const float r = ratio(heightOf(box), m_scrollV.scale->scaleFactor.getValue()[1]);
        place3DThumb(r > 0 ? -y / r : 0);
        scroll[1] = std::max(y, 0.0f);
    }
    if (!wrapLine) {
        const float end = lineWidth3D(m_caretLine);
        const float room = frame[0] - 2 * textInset;
        const float x = std::max(std::max(std::min(-scroll[0], end - room / 4), end - room), 0.0f);
        if (x != -scroll[0]) {
            const float way = m_scrollH.scale->scaleFactor.getValue()[0];
            const float r = ratio(widthOf(box), way);
            place3DSideThumb(r > 0 ? x / r : 0);
            scroll[0] = -x;
        }
    }
    m_textScroll->translation = scroll;
}

// The keyboard.

void KsDialogEditText::processKeyEvents(void* data, KsEventCallback* callback)
{
    auto* self = static_cast<KsDialogEditText*>(data);
    if (self->m_editMode != 1) return;
    if (self->m_pickStyle->style.getValue() == KsPickStyle::UNPICKABLE) return; // disabled
    const KsKeepAlive keep(self);
    const KsEvent* event = callback->getEvent();
    const KsTypedKey key = ksTypedKey(event);
    switch (key.kind) {
    case KsTypedKey::Nothing: break;
    case KsTypedKey::Character: self->insertCharTo3DText(key.character); break;
    case KsTypedKey::Backspace: self->removeCharIn3DText(); break;
    case KsTypedKey::Return:
        if (event->wasShiftDown())
            self->insertCharTo3DText('\n');
        else
            self->finish3DEditing();
        break;
    }
}

void KsDialogEditText::finish3DEditing()
{
    m_editMode = 0;
    setSwitchValue(getAnyPart("frameSwitch", false), 0);
    if (trigOnEnter) applyDlgCptAuditor();
}

void KsDialogEditText::set3DInactive()
{
    const KsKeepAlive keep(this);
    finish3DEditing();
    KsDialogComponent::set3DInactive();
}

// The pointer.

void KsDialogEditText::startCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogEditText*>(dragger)->draggerStartCallback3D();
}

void KsDialogEditText::motionCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogEditText*>(dragger)->draggerMotionCallback3D();
}

void KsDialogEditText::finishCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogEditText*>(dragger)->draggerFinishCallback3D();
}

void KsDialogEditText::draggerStartCallback3D()
{
    if (!isBuilt3D()) return;
    const KsKeepAlive keep(this);
    set3DCurrentActive(this);
    const auto press = [this](const char* part) { setSwitchValue(getAnyPart(part, false), 1); };
    const auto startThumb = [this](const KbVec3f& along) {
        const KbVec3f point = getLocalStartingPoint();
        m_lineProjector->setLine(KbLine(point, point + along));
        if (KsHandleEventAction* action = getHandleEventAction();
            action && KsViewVolumeElement::isSet(action->getState()))
            m_lineProjector->setViewVolume(getViewVolume());
    };
    m_scrollV.start = m_scrollV.position->translation;
    m_scrollH.start = m_scrollH.position->translation;
    if (editable && isPicked({"editSep"})) {
        m_editMode = 1;
        press("frameSwitch");
    } else if (isPicked({"downSwitch"})) {
        press("downSwitch");
    } else if (isPicked({"upSwitch"})) {
        press("upSwitch");
    } else if (isPicked({"cursorVSep"})) {
        startThumb(KbVec3f(0, 1, 0));
    } else if (isPicked({"leftSwitch"})) {
        press("leftSwitch");
    } else if (isPicked({"rightSwitch"})) {
        press("rightSwitch");
    } else if (isPicked({"cursorHSep"})) {
        startThumb(KbVec3f(1, 0, 0));
    }
}

void KsDialogEditText::draggerMotionCallback3D()
{
    const bool vertical = isPicked({"cursorVSep"});
    if (!vertical && !isPicked({"cursorHSep"})) return;
    const KsKeepAlive keep(this);
    // What is typed ends here, with the auditors that wait for it.
    set3DCurrentActive(this);
    set3DInactive();
    m_lineProjector->setWorkingSpace(getLocalToWorldMatrix(getHandleEventAction()));
    const KbVec3f start = getLocalStartingPoint();
    KbVec3f point = start;
    if (getEvent() && getEvent()->isOfType(KsTrackerEvent::getClassTypeId())) {
        KbVec3f onRay;
        m_lineProjector->getLine().getClosestPoints(getTrackerRay(), point, onRay);
    } else if (!m_lineProjector->tryProject(getNormalizedLocaterPosition(), point)) {
        point = start;
    }
    const KbVec3f delta = point - start;
    m_thumbDragged = true;
    if (vertical)
        place3DThumb(m_scrollV.start[1] + delta[1]);
    else
        place3DSideThumb(m_scrollH.start[0] + delta[0]);
    update3DTextScrollPosition();
}

void KsDialogEditText::abandonDrag3D()
{
    release3DParts({"downSwitch", "upSwitch", "leftSwitch", "rightSwitch"});
}

void KsDialogEditText::draggerFinishCallback3D()
{
    const auto release = [this](const char* part) { setSwitchValue(getAnyPart(part, false), 0); };
    const bool down = isPicked({"downSwitch"});
    if (!down && !isPicked({"upSwitch"})) {
        // These show that they were pressed; a text is moved sideways by the thumb.
        if (isPicked({"leftSwitch"}))
            release("leftSwitch");
        else if (isPicked({"rightSwitch"}))
            release("rightSwitch");
        return;
    }
    const float all = heightOf(editBox3D());
    const float hidden = all - (static_cast<float>(size3D()[1]) - barWidth);
    const auto lines = static_cast<float>(m_text.text->string.getNum());
    const float way =
        m_scrollV.scale->scaleFactor.getValue()[1] - m_scrollV.thumb->scaleFactor.getValue()[1];
    const float step = hidden > 0 && lines > 0 ? all * way / (lines * hidden) : 0;
    move3DCursor(down ? -step : step);
    release(down ? "downSwitch" : "upSwitch");
}

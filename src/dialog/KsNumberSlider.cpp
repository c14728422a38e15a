#include <formweave/KsNumberSlider.h>

#include "KsLayouts.h"
#include "KsTypedKey.h"

#include <arborium/base/KbNumber.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Arithmetic of the two kinds of numbers. Limits and values come from files and applications: equal,
// reversed, huge and non-finite ones give some number, and positions are never anything but numbers.

float asPosition(double position)
{
    return std::isfinite(position) ? static_cast<float>(position) : 0.0f;
}

float positionBetween(std::int32_t number, std::int32_t min, std::int32_t max)
{
    if (min == max) return 0;
    const auto from = static_cast<float>(std::int64_t{number} - min);
    return asPosition(from / static_cast<float>(std::int64_t{max} - min));
}

float positionBetween(float number, float min, float max)
{
    if (min == max) return 0;
    if (std::isfinite(max - min)) return asPosition((number - min) / (max - min));
    return asPosition((double{number} - min) / (double{max} - min));
}

// The nearest step, halves upward; also beyond the limits, and where they are reversed.
std::int32_t numberAt(float position, std::int32_t min, std::int32_t max, std::int32_t)
{
    if (min == max) return min;
    const double range = static_cast<double>(std::int64_t{max} - min);
    return KbNumber::toInt32(std::floor((position + 1 / (range * 2)) * range) + min);
}

// Without limits to stand between, the slider keeps its value.
float numberAt(float position, float min, float max, float present)
{
    if (!std::isfinite(min) || !std::isfinite(max)) return present;
    const float number = (max - min) * position + min;
    if (std::isfinite(number)) return number;
    const double largest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp((double{max} - min) * position + min, -largest, largest));
}

// Digits of the longest of the numbers, of which a sign is one.
int digitsOf(std::int32_t limit)
{
    const double size = std::fabs(static_cast<double>(limit));
    if (size == 0) return 1;
    return static_cast<int>(std::log10(static_cast<float>(size)) + (limit < 0 ? 1.0f : 0.0f)) + 1;
}

// Here the sign only tips the scales.
int digitsOf(float limit)
{
    const std::int32_t whole = KbNumber::toInt32(limit);
    const auto size = static_cast<float>(std::fabs(static_cast<double>(whole)));
    const float measured = size + (whole < 0 ? 1.0f : 0.0f);
    return measured > 0 ? static_cast<int>(std::log10(measured)) + 1 : 1;
}

std::int32_t widestNumber(int digits, std::int32_t min, std::int32_t max)
{
    constexpr int longest = std::numeric_limits<std::int32_t>::digits10 + 1;
    if (digits < longest) return static_cast<std::int32_t>(std::pow(10, digits)) - 1;
    return std::min(min, max) < 0 ? std::numeric_limits<std::int32_t>::min()
                                  : std::numeric_limits<std::int32_t>::max();
}

double widestNumber(int digits, float, float) { return std::pow(10.0, digits) - 1.0 + 0.01; }

// The number that a text begins with. `exact` is false if the text says something else than what
// the slider takes.
void parse(const KbString& text, std::int32_t& number, bool& exact)
{
    number = text.toInt();
    exact = text.toFloat() == static_cast<float>(number);
}

void parse(const KbString& text, float& number, bool& exact)
{
    number = text.toFloat();
    exact = true;
}

bool mayType(const std::string&, char c, std::int32_t) { return c >= '0' && c <= '9'; }

// What was typed so far must read as one number, with nothing but blanks about it.
bool mayType(const std::string& text, char c, float)
{
    constexpr const char* blanks = " \t";
    const std::string whole = text + c;
    const std::size_t first = whole.find_first_not_of(blanks);
    if (first == std::string::npos) return false;
    const std::string word = whole.substr(first, whole.find_last_not_of(blanks) + 1 - first);
    float number = 0;
    return KbNumber::parseFloat(word, number) == KbNumber::Result::Ok;
}

const char* defaultFormat(std::int32_t) { return "%d"; }
const char* defaultFormat(float) { return "%.3f"; }

template <class Number>
KbString printNumber(const KbString& format, Number number, const char* other)
{
    KbNumberFormat parsed;
    if (!parsed.parse(format.toUtf8())) parsed.parse(other);
    return KbString::fromUtf8(parsed.print(number));
}

} // namespace

template <class Field> float KsNumberSlider<Field>::positionOf(Number number) const
{
    return positionBetween(number, min.getValue(), max.getValue());
}

template <class Field>
typename KsNumberSlider<Field>::Number KsNumberSlider<Field>::valueAt(float position) const
{
    return numberAt(position, min.getValue(), max.getValue(), value.getValue());
}

template <class Field> KbString KsNumberSlider<Field>::print(Number number) const
{
    return printNumber(format, number, defaultFormat(number));
}

template <class Field> int KsNumberSlider<Field>::computeEditZoneWidth()
{
    const int digits = std::max(digitsOf(min.getValue()), digitsOf(max.getValue()));
    const auto widest = widestNumber(digits, min.getValue(), max.getValue());
    const KbString text = printNumber(format, widest, defaultFormat(Number()));
    return getLabelPixelSize(text, nullptr)[0] + 8;
}

template <class Field> void KsNumberSlider<Field>::limitValue()
{
    // The first slider of each kind in a process keeps to its limits, whatever it is told.
    static bool isFirst = true;
    const Number asked = value;
    if (fixedLimits || isFirst) {
        if (value > max) value = max;
        if (asked < min) value = min;
    } else {
        if (value > max) max = value;
        if (value < min) min = value;
    }
    isFirst = false;
    if (min == max && value != min) value = min;
    m_position = positionOf(value);
}

template <class Field>
void KsNumberSlider<Field>::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position,
                                        int build2D)
{
    const KsKeepAlive keep(this);
    limitValue();
    KsDialogSlider::buildWidget(parent, size, position, build2D);
    m_valueSensor.arm(this, value);
    m_minSensor.arm(this, min);
    m_maxSensor.arm(this, max);
    updateBoth<KsDialogSlider>(this, &KsDialogSlider::changeSliderValue,
                               &KsDialogSlider::change3DSliderValue);
}

template <class Field> void KsNumberSlider<Field>::limitsChanged()
{
    m_position = positionOf(value);
    updateWidget();
    refreshViews();
}

template <class Field> void KsNumberSlider<Field>::updateFromSensor(KsSensor* sensor)
{
    if (m_valueSensor.is(sensor)) {
        setValueFromSlider(positionOf(value));
        refreshViews();
    } else if (m_minSensor.is(sensor)) {
        if (value < min) value = min;
        limitsChanged();
    } else if (m_maxSensor.is(sensor)) {
        if (max < value) value = max;
        limitsChanged();
    } else {
        KsDialogSlider::updateFromSensor(sensor);
    }
}

template <class Field> void KsNumberSlider<Field>::setValueFromEdit(int in2D)
{
    KbString text;
    if (in2D ? isBuilt2D() : isBuilt3D() != 0)
        text = in2D ? getValueFromEdit() : get3DValueFromEdit();
    Number number;
    bool exact;
    parse(text, number, exact);
    if (fixedLimits) {
        if (number > max) {
            number = max;
            exact = false;
        }
        if (number < min) {
            number = min;
            exact = false;
        }
    } else {
        // The sensor of a limit prints the position as it was before.
        if (number > max) {
            max = number;
            exact = false;
        }
        if (number < min) {
            min = number;
            exact = false;
        }
    }
    m_position = positionOf(number);
    if (!exact && isBuilt2D()) changeEditValue();
    if (is3DLive()) change3DEditValue();
}

template <class Field> void KsNumberSlider<Field>::setValue()
{
    const KsKeepAlive keep(this);
    // A bar that stands where `value` stands has nothing to say, though the way from one to the
    // other and back may lose a last digit.
    if (min != max && m_position == positionOf(value)) return;
    const Number number = valueAt(m_position);
    if (number == value) return;
    const KsSensorSilencer silencer(m_valueSensor.get());
    value = number;
    applyDlgCptAuditor();
}

template <class Field> void KsNumberSlider<Field>::abandonDrag3D()
{
    // What was not taken into `value` does not count.
    if (valueAt(m_position) == value) return;
    setValueFromSlider(positionOf(value));
    refreshViews();
}

template <class Field> void KsNumberSlider<Field>::changeEditValue()
{
    showEditText(print(valueAt(m_position)));
}

template <class Field> void KsNumberSlider<Field>::change3DEditValue()
{
    set3DText(print(valueAt(m_position)));
    KsDialogSlider::change3DEditValue();
}

template <class Field> void KsNumberSlider<Field>::computeNewSliderEditValue(const KsEvent* event)
{
    const KsTypedKey key = ksTypedKey(event);
    std::string text = get3DValueFromEdit().toLatin1();
    switch (key.kind) {
    case KsTypedKey::Nothing: return;
    case KsTypedKey::Character:
        if (!mayType(text, key.character, Number())) return;
        text += key.character;
        break;
    case KsTypedKey::Backspace:
        if (!text.empty()) text.pop_back();
        break;
    case KsTypedKey::Return: {
        const KsKeepAlive keep(this);
        {
            const KsSensorSilencer silencer(m_valueSensor.get());
            setValueFromEdit(0);
            // What was typed itself, also beyond fixed limits.
            Number number;
            bool exact;
            parse(text, number, exact);
            value = number;
            change3DSliderValue();
            if (isBuilt2D()) {
                changeSliderValue();
                changeEditValue();
            }
        }
        finish3DEditing();
        return;
    }
    }
    set3DText(text);
}

template <class Field> void KsNumberSlider<Field>::finish3DEditing()
{
    end3DEditing();
    applyDlgCptAuditor();
}

template class KsNumberSlider<KsSFInt32>;
template class KsNumberSlider<KsSFFloat>;

#pragma once

#include <arborium/qt/KsQtGLWidget.h>

#include <cstdint>
#include <utility>
#include <vector>

class QMouseEvent;

/// A horizontal bar with a cursor that points at a value from 0 at the left end to 1 at the right
/// one. Subclasses draw both, in the two rectangles that this class keeps.
///
/// A press on the cursor takes it along; a press elsewhere on the widget first moves it there. With
/// the focus, the arrow keys move it by a hundredth, Page Up and Page Down by a tenth, Home and End
/// to the ends, and the wheel by a hundredth per notch.
class ARBORIUM_API KsQtBasicSlider : public KsQtGLWidget {
    Q_OBJECT

public:
    /// What the user can do: take the cursor along, place it with a press, use keys and wheel. A
    /// type is a sum of these.
    enum Type { DRAG = 1, JUMP = 2, KEYS = 4 };
    /// Builds the widget on `parent`.
    explicit KsQtBasicSlider(QWidget* parent, int type = DRAG | JUMP | KEYS);
    ~KsQtBasicSlider() override;

    /// The value last set, by the user or by `setValue`.
    float getValue() const { return m_value; }
    /// Shows the value and calls nobody. Values outside of 0 to 1 are kept, and shown at that end;
    /// what is no number counts as 0.
    void setValue(float value);

    /// Takes over a drag that the user has begun on `earlier`, and the pointer with it until the
    /// button is let go. Nothing unless this slider is visible.
    void takeDragFrom(KsQtBasicSlider& earlier);

    /// Called with `data` and the value, which is from 0 to 1, in the order of adding. A pair of
    /// function and data is held once; null is ignored. A callback may remove others, which are not
    /// called any more, and delete the slider.
    using Callback = void (*)(void* data, float value);
    /// With each step that the user moves the cursor.
    void addValueChangedCallback(Callback function, void* data);
    void removeValueChangedCallback(Callback function, void* data);
    /// At the end of each of the user's movements, with the last value.
    void addFinishCallback(Callback function, void* data);
    void removeFinishCallback(Callback function, void* data);

protected:
    /// Pixels, both ends inside, from the lower left corner of the widget.
    struct Rectangle {
        std::int16_t x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    };
    /// What the values run along: 0 at x0, 1 at x1.
    const Rectangle& getBarRectangle() const { return m_bar; }
    /// Its middle stands at the value, or at the end that is nearer.
    const Rectangle& getCursorRectangle() const { return m_cursor; }

    void sizeChanged(int width, int height) override;
    bool processEvent(QEvent* event) override;
    void redrawOverlay(QPainter& painter) override;
    const char* getDefaultWidgetName() const override;

private:
    using Callbacks = std::vector<std::pair<Callback, void*>>;
    static void add(Callbacks& list, Callback function, void* data);
    static void remove(Callbacks& list, Callback function, void* data);
    /// FALSE if the slider has died meanwhile.
    bool call(const Callbacks& list);
    bool moveTo(float value);
    void placeCursor();
    bool press(const QMouseEvent* event);
    bool pressKey(int key);

    int m_type;
    float m_value = 0;
    Rectangle m_bar, m_cursor;
    bool m_dragged = false;
    int m_grabOffset = 0; // from the pointer to the cursor's tip
    int m_wheel = 0;      // eighths of degrees not used yet
    Callbacks m_valueChanged, m_finished;
};

// The frame that stands for a slider in a window.

#include "Sliders.h"

TEST(SliderRelay, holdsItsWidgetsUnderTheirNames)
{
    ShownInteger shown("max 10", Stage::Window);
    QWidget* frame = shown.slider->getWidget();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->objectName(), "LMNKsDialogQSliderFrame");
    EXPECT_EQ(shown.edit()->objectName(), "LMNKsDialogQSliderLineEditWidget");
    EXPECT_EQ(shown.labelWidget()->objectName(), "LMNKsDialogQSliderLabelWidget");
    EXPECT_EQ(shown.toggle()->objectName(), "LMNKsDialogQSliderToggleWidget");
    QObjectList widgets;
    for (QObject* child : frame->children()) {
        if (child->isWidgetType()) widgets << child;
    }
    EXPECT_EQ(widgets,
              (QObjectList{shown.edit(), shown.bar(), shown.labelWidget(), shown.toggle()}));
    const QString font = KsFormweave::getFormweaveFont().toString();
    for (const QWidget* widget :
         {static_cast<QWidget*>(shown.edit()), static_cast<QWidget*>(shown.labelWidget()),
          static_cast<QWidget*>(shown.toggle())})
        EXPECT_EQ(widget->font().toString(), font);
}

TEST(SliderRelay, hasItsSlotsInTheirOrder)
{
    ShownInteger shown("max 10", Stage::Window);
    const QMetaObject* meta = shown.slider->getWidget()->metaObject();
    EXPECT_STREQ(meta->className(), "KsDialogQSlider");
    QStringList names;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
        names << meta->method(i).methodSignature();
    EXPECT_EQ(names, (QStringList{"eventNotify(int)", "eventNotifyPressed()"}));
}

TEST(SliderRelay, withoutAnEditorReportsZero)
{
    ShownInteger shown("max 10 value 4");
    delete shown.edit();
    EXPECT_EQ(shown.slider->getValueFromEdit(), "0");
    shown.slider->changeSliderFromEdit();
    EXPECT_EQ(shown.slider->value, 0);
    shown.slider->value = 7;
    shown.slider->valueVisible = false;
}

TEST(SliderRelay, aTextBeyondLatin1IsCutDown)
{
    ShownInteger shown("max 10 value 4");
    shown.edit()->setText(QString::fromUtf8("\u0663"));
    EXPECT_EQ(shown.slider->getValueFromEdit(), "?");
}

TEST(SliderRelay, aResizeWritesTheSizeAndMovesTheWidgets)
{
    ShownInteger shown("max 10 value 4");
    QWidget* frame = shown.slider->getWidget();
    const int right = frame->width() - shown.edit()->geometry().right();
    frame->resize(frame->width() + 40, frame->height() + 10);
    EXPECT_EQ(shown.slider->width, frame->width());
    EXPECT_EQ(shown.slider->height, frame->height());
    EXPECT_EQ(frame->width() - shown.edit()->geometry().right(), right);
    EXPECT_EQ(shown.bar()->height(), frame->height() - 6);
}

TEST(SliderRelay, tabGoesFromLeftToRight)
{
    ShownInteger shown("max 10 value 4");
    shown.toggle()->setFocus();
    QTest::keyClick(shown.toggle(), Qt::Key_Tab);
    EXPECT_TRUE(shown.bar()->hasFocus());
    QTest::keyClick(shown.bar(), Qt::Key_Tab);
    EXPECT_TRUE(shown.edit()->hasFocus());
}

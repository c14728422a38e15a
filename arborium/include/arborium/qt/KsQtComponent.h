#pragma once

#include <arborium/base/KsApi.h>

#include <QObject>
#include <QPointer>
#include <QString>

class QWidget;

/// Base of things that own a widget which they build themselves. A subclass makes the widget and
/// hands it to `setBaseWidget`.
class ARBORIUM_API KsQtComponent : public QObject {
    Q_OBJECT

public:
    /// `parent` is where the widget is to be built; null for a window of its own. `name` becomes
    /// the widget's object name; null or empty stands for the class's default.
    explicit KsQtComponent(QWidget* parent = nullptr, const char* name = nullptr);
    /// Deletes the widget, unless its parent already has.
    ~KsQtComponent() override;

    /// Null before the widget is built, and after it has died.
    virtual QWidget* getWidget() const;
    /// That of the constructor; null when it has died.
    QWidget* getParentWidget() const;
    // Nothing without a widget.
    void show();
    void hide();
    /// FALSE without a widget.
    bool isVisible() const;

    // Of the window, if the widget is one. Empty stands for the class's default.
    void setTitle(const QString& title);
    QString getTitle() const;
    void setIconTitle(const QString& title);
    QString getIconTitle() const;
    /// Covers the screen, or goes back. Remembered for a widget that is not built; of no effect on
    /// one that is no window.
    void setFullScreen(bool fullScreen);
    /// What was asked for last; FALSE at first.
    bool isFullScreen() const { return m_fullScreen; }

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    /// Takes the ownership of the widget; an earlier one is deleted later. Null takes it out only.
    void setBaseWidget(QWidget* widget);
    /// Called once for each base widget, when it is shown for the first time.
    virtual void afterRealizeHook();
    // What stands where nothing was given: "KsQtComponent", "Component", and the default title.
    virtual const char* getDefaultWidgetName() const;
    virtual const char* getDefaultTitle() const;
    virtual const char* getDefaultIconTitle() const;

private:
    void applyTitles();

    QPointer<QWidget> m_parent;
    QPointer<QWidget> m_widget;
    QString m_name;
    QString m_title;
    QString m_iconTitle;
    bool m_fullScreen = false;
    bool m_realized = false;
};

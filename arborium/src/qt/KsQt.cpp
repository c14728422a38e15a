#include <arborium/base/KsDebugError.h>
#include <arborium/qt/KsQt.h>
#include <arborium/sensors/KsSensorManager.h>

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace {

struct Binding {
    int count = 0;
    QPointer<QTimer> timer; // the application's child
    QPointer<QWidget> topLevel;
};

Binding& binding()
{
    static Binding& instance = *new Binding;
    return instance;
}

// A timer of zero and not a posted event: sensors that keep scheduling others must not keep the
// loop from input and painting.
void startTimer(void*)
{
    if (QTimer* timer = binding().timer) timer->start();
}

void processQueue()
{
    KsSensorManager::processDelayQueue();
    if (!KsSensorManager::isDelayQueueEmpty()) startTimer(nullptr);
}

bool hasApplication(const char* where)
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) return true;
    KsDebugError::post(where, "There is no QApplication.");
    return false;
}

} // namespace

bool KsQt::init()
{
    if (!hasApplication("KsQt::init")) return false;
    Binding& b = binding();
    ++b.count;
    if (!b.timer) {
        b.timer = new QTimer(qApp);
        b.timer->setSingleShot(true);
        b.timer->setInterval(0);
        QObject::connect(b.timer.data(), &QTimer::timeout, &processQueue);
    }
    KsSensorManager::setChangedCallback(&startTimer, nullptr);
    if (!KsSensorManager::isDelayQueueEmpty()) startTimer(nullptr);
    return true;
}

bool KsQt::init(int& argc, char** argv)
{
    if (!QCoreApplication::instance()) new QApplication(argc, argv);
    return init();
}

void KsQt::finish()
{
    Binding& b = binding();
    if (b.count == 0 || --b.count > 0) return;
    KsSensorManager::setChangedCallback(nullptr, nullptr);
    delete b.timer.data();
}

bool KsQt::isInitialized() { return binding().count > 0; }

QWidget* KsQt::getTopLevelWidget() { return binding().topLevel; }

void KsQt::setTopLevelWidget(QWidget* widget) { binding().topLevel = widget; }

void KsQt::show(QWidget* widget)
{
    if (widget) widget->show();
}

void KsQt::hide(QWidget* widget)
{
    if (widget) widget->hide();
}

int KsQt::mainLoop() { return hasApplication("KsQt::mainLoop") ? QApplication::exec() : 1; }

void KsQt::exitMainLoop(int status)
{
    if (QCoreApplication::instance()) QCoreApplication::exit(status);
}

#include <formweave/KsDialogWidgetList.h>

KsDialogWidgetList::KsDialogWidgetList() = default;
KsDialogWidgetList::KsDialogWidgetList(int capacity) : KbPList(capacity) {}
KsDialogWidgetList::KsDialogWidgetList(const KsDialogWidgetList& list) = default;
KsDialogWidgetList::~KsDialogWidgetList() = default;
KsDialogWidgetList& KsDialogWidgetList::operator=(const KsDialogWidgetList& list) = default;

void KsDialogWidgetList::append(QWidget* widget) { KbPList::append(widget); }

void KsDialogWidgetList::insert(QWidget* widget, int index) { KbPList::insert(widget, index); }

int KsDialogWidgetList::find(const QWidget* widget) const { return KbPList::find(widget); }

QWidget* KsDialogWidgetList::get(int index) const
{
    return static_cast<QWidget*>(KbPList::get(index));
}

QWidget*& KsDialogWidgetList::operator[](int index)
{
    return reinterpret_cast<QWidget*&>(KbPList::operator[](index));
}

#pragma once

#include <arborium/base/KbPList.h>
#include <formweave/KsFormweaveApi.h>

class QWidget;

/// A list of widgets that it does not own.
class FORMWEAVE_API KsDialogWidgetList : public KbPList {
public:
    KsDialogWidgetList();
    /// Reserves room; a capacity below 1 reserves none.
    explicit KsDialogWidgetList(int capacity);
    KsDialogWidgetList(const KsDialogWidgetList& list);
    virtual ~KsDialogWidgetList();
    KsDialogWidgetList& operator=(const KsDialogWidgetList& list);

    void append(QWidget* widget);
    /// Before position `index`; a position below 0 counts as 0, one behind the end appends.
    void insert(QWidget* widget, int index);
    /// The position of the first such widget; -1 for none.
    int find(const QWidget* widget) const;
    /// Null outside of the list.
    QWidget* get(int index) const;
    QWidget* operator[](int index) const { return get(index); }
    /// Grows the list with nulls up to the position; a bad index gives a slot that nothing reads.
    QWidget*& operator[](int index);
};

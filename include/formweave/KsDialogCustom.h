#pragma once

#include <formweave/KsDialogComponent.h>

class QFrame;

/// Room for an application's own widget: an empty frame, into whose layout the application puts what
/// it likes. The frame stays the same over any number of builds. The `label` is shown in neither
/// presentation; in a scene there is an empty frame.
class FORMWEAVE_API KsDialogCustom : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogCustom);

public:
    KsDialogCustom();

    /// The frame, with a `QHBoxLayout`; null before the first build of either presentation. Built for
    /// a scene only, it stands in no window yet.
    QWidget* getWidget() const;
    /// Nothing: an application adds its widgets to the frame's layout.
    void addChildWidget() {}

    void destroyWidget() override;
    void changeEdgeStyle() override;

protected:
    ~KsDialogCustom() override;
    void createLabelWidget() override;
    void create3DControl() override;

private:
    void makeHost();

    QPointer<QFrame> m_host;
};

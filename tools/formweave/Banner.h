#pragma once

#include <QLabel>

#include <string>

/// A message over the upper part of a window, with no place in its layout; hidden while there is
/// none. The window owns it.
class Banner : public QLabel {
public:
    explicit Banner(QWidget* window);
    /// The empty text hides the banner.
    void setMessage(const std::string& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fit();
};

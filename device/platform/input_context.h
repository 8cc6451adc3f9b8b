// When the device's own keyboard is open, and where its keys go.

#pragma once

#include <QPointer>
#include <qpa/qplatforminputcontext.h>

#include <memory>

namespace lindenreed::device {

class Device;
class KeyboardWindow;

/// Opens the keyboard when a text field gets the focus and hides it when no field has it any more, or when
/// the application asks for that. What it types goes to whatever field has the focus at that moment; other
/// keys reach the field beside it. Main thread.
class InputContext final : public QPlatformInputContext
{
    Q_OBJECT

public:
    explicit InputContext(const Device &device); ///< which must outlive it
    ~InputContext() override;

    bool isValid() const override { return true; }
    void setFocusObject(QObject *object) override;
    void update(Qt::InputMethodQueries queries) override;
    void showInputPanel() override;
    void hideInputPanel() override;
    bool isInputPanelVisible() const override;
    QRectF keyboardRect() const override; ///< coordinates of the focused window; empty while hidden
    QLocale locale() const override;

    /// On a device without touch the open keyboard takes the keys that move over it, press its keys and
    /// close it. False: the key is for the focused item.
    bool takeKey(Qt::Key key);

private:
    void settleSoon();
    void settle();
    void done();

    const Device &m_device;
    std::unique_ptr<KeyboardWindow> m_window; ///< null until it is opened for the first time
    QPointer<QObject> m_field; ///< that the keyboard was opened for
    bool m_wanted = false;
    bool m_settling = false;
};

} // namespace lindenreed::device

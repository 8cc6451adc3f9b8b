// The device, as Qt's platform.

#pragma once

#include <QImage>
#include <qpa/qplatformintegration.h>
#include <qpa/qplatformnativeinterface.h>

#include <memory>

namespace lindenreed::device {

class Composition;
class InputContext;
class Panel;
class PlatformScreen;
class RemoteControl;
class ServiceManager;
class StatusPanel;

/// Starts the device when Qt initialises the platform, and stops it when Qt destroys it. Main thread.
class Integration final : public QPlatformIntegration
{
public:
    Integration();
    ~Integration() override;

    void initialize() override;
    void destroy() override;
    void quit() const override;

    bool hasCapability(Capability capability) const override;
    QVariant styleHint(StyleHint hint) const override;
    QPlatformWindow *createPlatformWindow(QWindow *window) const override;
    QPlatformBackingStore *createPlatformBackingStore(QWindow *window) const override;
    QAbstractEventDispatcher *createEventDispatcher() const override;
    QPlatformFontDatabase *fontDatabase() const override;
    QPlatformInputContext *inputContext() const override;
    QPlatformNativeInterface *nativeInterface() const override { return m_nativeInterface.get(); }

private:
    void startDevice();

    std::unique_ptr<QPlatformFontDatabase> m_fontDatabase;
    /// Has nothing to give; but Qt 6.8 asks it how fonts are hinted without a look whether it is there.
    std::unique_ptr<QPlatformNativeInterface> m_nativeInterface;
    std::unique_ptr<Panel> m_panel;
    std::unique_ptr<Composition> m_composition;
    std::unique_ptr<StatusPanel> m_statusPanel;
    std::unique_ptr<InputContext> m_inputContext;
    std::unique_ptr<RemoteControl> m_remoteControl;
    std::unique_ptr<ServiceManager> m_serviceManager;
    PlatformScreen *m_screen = nullptr; ///< Qt owns it
};

} // namespace lindenreed::device

// The task before this one, and the device's viewer.

#include "slateview.h"

#include "call.h"

#include <turned_size.h>

#include <QFile>
#include <QFileInfo>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

namespace {

constexpr int previousTask = 1; ///< the only other task that this device knows of

} // namespace

void GetPreviousTask(int *task, int *subtask)
{
    const Device *const running = device();
    const int found = running && running->previousOrientation ? previousTask : 0;
    if (task)
        *task = found;
    if (subtask)
        *subtask = 0;
    journal::record("GetPreviousTask", {}, shown(found));
}

const sv_framebuffer_info *GetTaskFramebufferInfo(int task)
{
    static constinit sv_framebuffer_info record{0, 0, 0};
    const Device *const running = device();
    if (!running || !running->previousOrientation || task != previousTask) {
        journal::record("GetTaskFramebufferInfo", {shown(task)}, "null");
        return nullptr;
    }
    const int orientation = *running->previousOrientation;
    const QSize size = turnedSize(running->profile.panelSize, orientation);
    record = {size.width(), size.height(), orientation};
    journal::record("GetTaskFramebufferInfo", {shown(task)}, "orientation " + shown(orientation));
    return &record;
}

int OpenBook(const char *path, const char *parameters, int flags)
{
    Device *const running = device();
    const bool taken = running && path && *path != '\0';
    if (taken)
        running->viewer.open(QFileInfo(QFile::decodeName(path)).absoluteFilePath());
    return answer("OpenBook", taken ? 1 : 0, path, parameters, flags);
}

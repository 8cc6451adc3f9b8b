// The real program, of whose calls for files one fails.

#pragma once

#include "fault_plan.h"
#include "named_screen.h"

class FaultyDevice : public NamedScreen
{
public:
    /// The program's process has its file calls in hand; what it starts has them, too.
    FaultyDevice(const QString &folder, const QString &planPath)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(FAULTY_FILES));
        environment.insert(QString::fromLatin1(FaultPlan::pathVariable), planPath);
        environment.insert(QString::fromLatin1(FaultPlan::folderVariable), folder);
        // AddressSanitizer wants to be first otherwise; it only has to come before the C library.
        const QString sanitizer = QStringLiteral("ASAN_OPTIONS");
        environment.insert(sanitizer,
                           environment.value(sanitizer) + QStringLiteral(":verify_asan_link_order=0"));
        program().setProcessEnvironment(environment);
    }

    bool isRunning() const { return program().state() == QProcess::Running; }

    /// Quits it; whether it ended as it should.
    bool ends()
    {
        return does(QStringLiteral("quit"))
            && (program().state() == QProcess::NotRunning || program().waitForFinished())
            && program().exitStatus() == QProcess::NormalExit && program().exitCode() == 0;
    }
};

// File permissions that hold for the superuser too.

#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While an object of this lives, this thread cannot pass over file permissions, whoever it runs as.
class ObeyedPermissions
{
public:
    ObeyedPermissions()
    {
        ::syscall(SYS_capget, &m_header, m_saved);
        __user_cap_data_struct reduced[2] = {m_saved[0], m_saved[1]};
        reduced[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        ::syscall(SYS_capset, &m_header, reduced);
    }
    ~ObeyedPermissions() { ::syscall(SYS_capset, &m_header, m_saved); }
    ObeyedPermissions(const ObeyedPermissions &) = delete;
    ObeyedPermissions &operator=(const ObeyedPermissions &) = delete;

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_saved[2]{};
};

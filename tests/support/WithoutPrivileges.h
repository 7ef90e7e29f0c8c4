#pragma once

#include <QtGlobal>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tonequill::test {

// This thread may do no more with files than their modes allow, for as long as this
// lives, even if root runs the test.
class WithoutPrivileges {
public:
    WithoutPrivileges()
    {
        ::syscall(SYS_capget, &m_header, m_before);
        __user_cap_data_struct fewer[2] = {m_before[0], m_before[1]};
        fewer[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        if (::syscall(SYS_capset, &m_header, fewer) != 0)
            qFatal("The test could not give up its privileges.");
    }
    ~WithoutPrivileges() { ::syscall(SYS_capset, &m_header, m_before); }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_before[2] = {};
};

} // namespace tonequill::test

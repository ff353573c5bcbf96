#pragma once

#include <stdexcept>
#include <unistd.h>

// While it lives, the program may read what any user may, also when the superuser runs it.
class OrdinaryUser {
public:
    OrdinaryUser() {
        constexpr uid_t nobody = 65534;
        if (isSuperuser_ && ::setresuid(nobody, nobody, 0) != 0) {
            throw std::runtime_error("the superuser cannot become an ordinary user");
        }
    }
    ~OrdinaryUser() {
        if (isSuperuser_) {
            static_cast<void>(::setresuid(0, 0, 0));
        }
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    bool isSuperuser_ = ::geteuid() == 0;
};

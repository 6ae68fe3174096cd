#include "linux/client/ClaimMeaning.h"

namespace client {

ClaimMeaning meaningOf(bus::ClaimAnswer answer) {
    switch (answer) {
        case bus::ClaimAnswer::granted:
            return {Host::RightAnswer::granted, nullptr};
        case bus::ClaimAnswer::dismissed:
            return {Host::RightAnswer::cancelled,
                    "The cards cannot be used because no password was entered. To be asked again, start "
                    "VUpdater again."};
        case bus::ClaimAnswer::refused:
            return {Host::RightAnswer::denied,
                    "The cards cannot be used because permission was refused. Start VUpdater again and enter "
                    "an administrator's password, or ask somebody who has one."};
        case bus::ClaimAnswer::nobodyToAsk:
            break;
    }
    return {Host::RightAnswer::denied,
            "The cards cannot be used because nobody could be asked for an administrator's password. Log in "
            "to a desktop at the computer itself. If you have done so, that desktop's polkit authentication "
            "agent is missing or not running."};
}

}  // namespace client

#pragma once

#include "screens/users/user_enroll_card_tag.h"

/// The card step, entered again for a user who is there already.
class UserEnroll_ReCardTag : public UserEnroll_CardTag {
    Q_OBJECT

 public:
    using UserEnroll_CardTag::UserEnroll_CardTag;
};

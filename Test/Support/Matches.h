// Whether a whole text has a form.
#ifndef FRAMESIFT_TEST_SUPPORT_MATCHES_H
#define FRAMESIFT_TEST_SUPPORT_MATCHES_H

#include <gtest/gtest.h>

#include <string>

namespace Marvane::FrameSift {

// form: an extended regular expression of POSIX.
inline bool Matches(const std::string& text, const std::string& form)
{
    return testing::Matcher<std::string>(testing::MatchesRegex(form)).Matches(text);
}

} // namespace Marvane::FrameSift

#endif

// How a verb of the command ends.
#ifndef FRAMESIFT_APP_IO_APPERROR_H
#define FRAMESIFT_APP_IO_APPERROR_H

#include <stdexcept>
#include <string>

namespace Marvane::FrameSift {

// Scripts rely on these numbers; never renumber.
enum class EXIT_CODE : int
{
    Done = 0,
    Damage = 1, // the input was read to its end, and is damaged; as diff(1) and grep(1) use it
    Usage = 2,
    Io = 3,           // cannot open, read or write
    Format = 4,       // the input is not what was expected
    Interrupted = 130 // by Ctrl-C, as a shell numbers it
};

// Ends the command with one line on standard error. The text names the file and what is wrong with it.
class CAppError : public std::runtime_error
{
public:
    CAppError(EXIT_CODE eCode, const std::string& text) : std::runtime_error(text), m_eCode(eCode) {}
    EXIT_CODE Code() const { return m_eCode; }

private:
    EXIT_CODE m_eCode;
};

// The reader of our output went away, as head(1) does. For a listing that is no failure.
class CClosedPipe : public CAppError
{
public:
    explicit CClosedPipe(const std::string& text) : CAppError(EXIT_CODE::Io, text) {}
};

} // namespace Marvane::FrameSift

#endif

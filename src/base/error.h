#pragma once

#include <QString>

#include <exception>
#include <utility>

namespace base {

/// A failure of something that the desktop provides, as the operator is told of it. The number is never 0.
struct Error : std::exception
{
    Error(int errorNumber, QString errorDescription)
        : number(errorNumber)
        , description(std::move(errorDescription))
    {
    }

    int number;
    QString description;
};

} // namespace base

#include "kmat_exception.h"

#include <utility>

namespace kmat {

// Never destroyed: a host may still solve in an exit handler.
std::unique_ptr<KmatException>& KmatException::lastException = *new std::unique_ptr<KmatException>;

KmatException::KmatException(std::string message) : message(std::move(message)) {}

const char* KmatException::what() const noexcept { return message.c_str(); }

void KmatException::createKmatException(std::string message) {
    lastException.reset();
    lastException = std::make_unique<KmatException>(std::move(message));
}

KmatException* KmatException::getLastException() { return lastException.get(); }

void KmatException::clearLastException() { lastException.reset(); }

}  // namespace kmat

// Memory and file operations that are refused to the embedded service, for a test program of its own: it
// takes the place of the operators new and delete, of the database's memory and of its calls of the system.
#pragma once

#include <cstddef>

namespace embedded_test {

enum class Resource { Memory, Files };
enum class Extent { Once, FromThereOn };

// Before the database is used for the first time.
void TakeTheDatabasesPlaceOfResources();

// While it lives, the requests for a resource are counted, and one or all from one on are refused.
class Refusals {
  public:
    // `number` is the first request to be refused; 1 is the next one.
    Refusals(Resource resource, size_t number, Extent extent);
    ~Refusals();
    Refusals(const Refusals&) = delete;
    Refusals& operator=(const Refusals&) = delete;

    // Requests of the last one that lived, refused ones counted too.
    static size_t Requests();
};

}  // namespace embedded_test

// The library as a host that finds it at run time has it.
#pragma once

#include <dlfcn.h>

#include <stdexcept>
#include <string>

#include "voxam.h"

namespace test {

/// The exported functions of a library that was loaded with dlopen(). Throws std::runtime_error
/// when there is no such library, or one of the functions is missing.
class LoadedLibrary {
public:
    explicit LoadedLibrary(const std::string& path) : handle(dlopen(path.c_str(), RTLD_NOW)) {
        if (!handle) throw std::runtime_error(dlerror());
        find(create, "_InitVoxamApp");
        find(update, "_UpdateVoxamApp");
        find(iterate, "_IterateVoxamApp");
        find(iterateWithBlob, "_IterateVoxamAppWithBlob");
        find(destroy, "_DestroyVoxamApp");
        find(createGame, "_InitVoxamGame");
        find(solve, "_SolveVoxamGame");
        find(destroyGame, "_DestroyVoxamGame");
        find(createAnalysis, "_InitVoxamAnalysis");
        find(analyse, "_SolveVoxamAnalysis");
        find(destroyAnalysis, "_DestroyVoxamAnalysis");
    }
    ~LoadedLibrary() { dlclose(handle); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    decltype(_InitVoxamApp)* create = nullptr;
    decltype(_UpdateVoxamApp)* update = nullptr;
    decltype(_IterateVoxamApp)* iterate = nullptr;
    decltype(_IterateVoxamAppWithBlob)* iterateWithBlob = nullptr;
    decltype(_DestroyVoxamApp)* destroy = nullptr;
    decltype(_InitVoxamGame)* createGame = nullptr;
    decltype(_SolveVoxamGame)* solve = nullptr;
    decltype(_DestroyVoxamGame)* destroyGame = nullptr;
    decltype(_InitVoxamAnalysis)* createAnalysis = nullptr;
    decltype(_SolveVoxamAnalysis)* analyse = nullptr;
    decltype(_DestroyVoxamAnalysis)* destroyAnalysis = nullptr;

private:
    template <typename Function>
    void find(Function*& function, const char* name) {
        function = reinterpret_cast<Function*>(dlsym(handle, name));
        if (!function) throw std::runtime_error(dlerror());
    }

    void* handle;
};

}  // namespace test

#pragma once

#include <memory>

namespace brevlin {

class Application;
class ApplicationInstance;
class BusStart;
struct UserFolders;

/// When the main window opens.
enum class FirstShow { atOnce, whenAsked };

/// Makes every real part of the program, hands them to the model and shows the main window. Lives from start
/// to quit.
class Composition final
{
public:
    Composition(Application& application, BusStart& buses, const UserFolders& folders,
                ApplicationInstance& instance, FirstShow firstShow);
    ~Composition();
    Composition(const Composition&) = delete;
    Composition& operator=(const Composition&) = delete;

private:
    class Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace brevlin

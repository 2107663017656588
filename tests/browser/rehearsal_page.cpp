#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "embedded/layout/layout_reader.h"
#include "tools/farm_diff/farm_diff.h"
#include "tools/farm_page/farm_page.h"

namespace {

using embedded::tools::PageCall;
using std::chrono::minutes;

embedded::Farm ReadLayoutFile(const char* file) {
    std::stringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    const embedded::LayoutResult layout = embedded::ReadLayout(text.str());
    if (layout.problems.empty()) return layout.farm;
    std::cerr << embedded::ProblemText(file, layout.problems.front()) << '\n';
    std::exit(1);
}

PageCall Moved(const std::string& change, minutes start) {
    PageCall call;
    call.function = "KrvMediaExport";
    call.item = "jukebox 8, slot 3";
    call.start = start;
    call.duration = minutes(4);
    call.moving = minutes(1);
    call.change = change;
    return call;
}

PageCall Refused() {
    PageCall call;
    call.function = "KrvVolumeFormat";
    call.item = "jukebox 8, slot 3, side A";
    call.argument = "<b>label</b>";
    call.start = minutes(4);
    call.succeeded = false;
    call.code = 501;
    call.text = "There is no medium in <i>slot</i> 3.";
    return call;
}

PageCall Looked() {
    PageCall call;
    call.function = "KrvGetSlot";
    call.item = "jukebox 8, slot 3";
    call.start = minutes(4);
    return call;
}

}  // namespace

// Writes the page of a rehearsal: rehearsal_page BEFORE AFTER, both of them layout files. The calls are the
// same for all farms: two that take four minutes each, one that fails and one that only looks.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const embedded::Farm before = ReadLayoutFile(argv[1]);
    const embedded::Farm after = ReadLayoutFile(argv[2]);
    const embedded::tools::Plan plan = embedded::tools::CompareFarms(before, after);
    embedded::tools::FarmPage page;
    page.server = "my_server";
    page.farm = &before;
    page.after = &after;
    page.plan = &plan;
    page.remarks = {"about 8 min in jukebox <MyBox>, of which 2 min moving"};
    page.calls = {Moved("exported: MyBox\\3", minutes(0)), Refused(), Looked(), Moved("", minutes(4))};
    page.output = "line 1\n<script>document.title = 'hit'</script>\nK\xC3\xB6ln\n";
    WriteFarmPage(std::cout, page);
    return std::cout.good() ? 0 : 1;
}

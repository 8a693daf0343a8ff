#include "app/ProcessState.h"

namespace loomcrest {

std::string vrlmpCurSite;
std::string vrlmpWinTit = "Loomcrest2";
bool vrlmpViewChanged = false;
int vrlmpPLastState = 0;
std::vector<std::string> vrlmpBadLinkArray;
std::vector<std::string> vrlmpBadLinkReasonArray;
std::vector<std::string> vrlmpFiltersArray;
int vrlmpCurrentView = 1;
std::string vrlmpHTMLString;
std::string vrlmpUTLLoc;
bool vrlmpNeedsSave = false;

}  // namespace loomcrest

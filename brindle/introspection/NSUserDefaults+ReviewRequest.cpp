// SPDX-License-Identifier: Apache-2.0
#include "NSUserDefaults+ReviewRequest.h"

#include "appkit/NSAlert.h"
#include "appkit/NSApplication.h"
#include "appkit/NSWorkspace.h"
#include "core/NSObject+HXAssociatedObjects.h"
#include "foundation/NSURL.h"
#include "runtime/Table.h"

namespace brindle {

extern "C" const void* const JUAppStoreID = &JUAppStoreID;

namespace {

    constexpr StringConstant<"JUAppUses"> kUses;
    constexpr StringConstant<"JUAppUsesResponse"> kResponse;
    constexpr StringConstant<"JUAppRespondedAt"> kRespondedAt;

    constexpr std::uint64_t kFirstRequest = 8; // uses
    constexpr std::uint64_t kPause = 11; // uses

    enum Response : std::int32_t { rated = 1, later = 2, ratedBefore = 3 };

    struct ReviewRequest {

        static void updateAppUses(NSUserDefaults& self, NSString*)
        {
            // Counts are compared without sign, so a stored negative number is a huge one.
            const auto uses = static_cast<std::uint64_t>(self.integerForKey(kUses)) + 1;
            self.setInteger_forKey(static_cast<NSInteger>(uses), kUses);
            if (uses >= kFirstRequest && isDue(self, uses))
                ask(self, uses);
        }
        static bool isDue(NSUserDefaults& self, std::uint64_t uses)
        {
            const auto response = static_cast<std::int32_t>(self.integerForKey(kResponse));
            if (response == rated || response == ratedBefore)
                return false;
            const auto before = static_cast<std::uint64_t>(self.integerForKey(kRespondedAt));
            return response != later || uses - before >= kPause;
        }

        static void ask(NSUserDefaults& self, std::uint64_t uses)
        {
            const Ref<NSUserDefaults> defaults(&self);
            begin("Rate the App"_ns, "Rate App"_ns, "Rate Later"_ns,
                "It appears you’re getting use out of the app.\n"
                "Please rate the app on the App Store to support future development."_ns,
                [defaults, uses](NSModalResponse code) {
                    if (code == NSAlertAlternateReturn)
                        store(*defaults, later, uses);
                    else if (code == NSAlertDefaultReturn)
                        thank(defaults, uses);
                });
        }
        static void thank(const Ref<NSUserDefaults>& defaults, std::uint64_t uses)
        {
            begin("Thanks"_ns, "→"_ns, nullptr, ""_ns, [defaults, uses](NSModalResponse) {
                store(*defaults, rated, uses);
                openReviewURL(defaults);
            });
        }
        static void begin(NSString* message, NSString* button, NSString* alternate,
            NSString* information, const Block<void(NSModalResponse)>& handler)
        {
            const Ref<NSAlert> alert
                = NSAlert::cls()
                      .alertWithMessageText_defaultButton_alternateButton_otherButton_informativeTextWithFormat(
                          message, button, alternate, nullptr, information);
            const Ref<NSWindow> host = maybe(sharedApplicationOrNil())->mainWindow();
            alert->beginSheetModalForWindow_completionHandler(host.get(), handler);
        }
        static void store(NSUserDefaults& self, Response response, std::uint64_t uses)
        {
            self.setInteger_forKey(response, kResponse);
            self.setInteger_forKey(static_cast<NSInteger>(uses), kRespondedAt);
        }

        static void openReview(NSUserDefaults& self)
        {
            const Ref<NSString> text = NSString::cls().stringWithFormat(
                "macappstore://" BRINDLE_REVIEW_HOST
                "/WebObjects/MZUserPublishing.woa/wa/addUserReview"
                "?id=%@&displayable-kind=30"_ns,
                associatedValueForKey(self, JUAppStoreID));
            NSWorkspace::cls().sharedWorkspace()->openURL(
                NSURL::cls().URLWithString(text.get()).get());
        }

        static void table(Builder& t)
        {
            t.methods({
                { "updateAppUsesForReviewRequestWithAppID:", imp<updateAppUses> },
                { "openReviewURL", imp<openReview> },
            });
        }
    };

}
BRINDLE_EXTENSION(NSUserDefaults, ReviewRequest)

}

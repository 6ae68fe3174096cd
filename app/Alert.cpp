#include "app/Alert.h"

#include <Carbon/MacTypes.h>

#include "framework/widgets/StandardAlert.h"

bool ShowAlert(const char* title, const char* message) {
    Str255 pascalTitle;
    Str255 pascalMessage;
    CopyCStringToPascal(title, pascalTitle);
    CopyCStringToPascal(message, pascalMessage);
    AlertStdAlertParamRec parameters = {};
    parameters.movable = 0;
    parameters.helpButton = 0;
    parameters.filterProc = nullptr;
    parameters.defaultText = kAlertDefaultOKText;
    parameters.cancelText = kAlertDefaultCancelText;
    parameters.otherText = nullptr;
    parameters.defaultButton = kAlertStdAlertOKButton;
    parameters.cancelButton = kAlertStdAlertCancelButton;
    parameters.position = kWindowAlertPositionParentWindowScreen;
    int16_t item = 0;
    StandardAlert(kAlertCautionAlert, pascalTitle, pascalMessage, &parameters, &item);
    return item == kAlertStdAlertOKButton;
}

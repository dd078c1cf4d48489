"""The tags of the properties that the model sets, with their types (MS-OXPROPS). A named property
(PidLid...) has its long id in place of a property id."""

# Messages.
PidTagMessageClass = 0x001A001F
PidTagImportance = 0x00170003
PidTagPriority = 0x00260003
PidTagSensitivity = 0x00360003
PidTagSubject = 0x0037001F
PidTagSubjectPrefix = 0x003D001F
PidTagSentRepresentingName = 0x0042001F
PidTagStartDate = 0x00600040
PidTagEndDate = 0x00610040
PidTagSentRepresentingEmailAddress = 0x0065001F
PidTagDisplayBcc = 0x0E02001F
PidTagDisplayCc = 0x0E03001F
PidTagDisplayTo = 0x0E04001F
PidTagMessageFlags = 0x0E070003
PidTagNormalizedSubject = 0x0E1D001F
PidTagRtfInSync = 0x0E1F000B
PidTagAccess = 0x0FF40003
PidTagAccessLevel = 0x0FF70003
PidTagRtfCompressed = 0x10090102
PidTagHtml = 0x10130102
PidTagCreationTime = 0x30070040
PidTagLastModificationTime = 0x30080040
PidTagStoreSupportMask = 0x340D0003
PidTagChildrensNames = 0x3A58101F
PidTagInternetCodepage = 0x3FDE0003

# Recipients and attachments.
PidTagRecipientType = 0x0C150003
PidTagAttachNumber = 0x0E210003
PidTagObjectType = 0x0FFE0003
PidTagRowid = 0x30000003
PidTagDisplayName = 0x3001001F
PidTagEmailAddress = 0x3003001F
PidTagAttachDataBinary = 0x37010102
PidTagAttachExtension = 0x3703001F
PidTagAttachFilename = 0x3704001F
PidTagAttachMethod = 0x37050003
PidTagAttachMimeTag = 0x370E001F
PidTagAttachContentId = 0x3712001F
PidTagRecipientFlags = 0x5FFD0003

# PSETID_Common.
PidLidReminderDelta = 0x85010003
PidLidReminderTime = 0x85020040
PidLidReminderSet = 0x8503000B

# PSETID_Address.
PidLidHomeAddress = 0x801A001F
PidLidWorkAddress = 0x801B001F
PidLidWorkAddressStreet = 0x8045001F
PidLidWorkAddressCity = 0x8046001F
PidLidWorkAddressState = 0x8047001F
PidLidWorkAddressPostalCode = 0x8048001F
PidLidContactUserField1 = 0x804F001F
PidLidContactUserField2 = 0x8050001F
PidLidContactUserField3 = 0x8051001F
PidLidContactUserField4 = 0x8052001F
PidLidDistributionListName = 0x8053001F
PidLidDistributionListOneOffMembers = 0x80541102
PidLidDistributionListMembers = 0x80551102
PidLidInstantMessagingAddress = 0x8062001F
PidLidEmail1EmailAddress = 0x8083001F
PidLidEmail2EmailAddress = 0x8093001F
PidLidEmail3EmailAddress = 0x80A3001F
PidLidWorkAddressCountryCode = 0x80DB001F

# PSETID_Appointment.
PidLidBusyStatus = 0x82050003
PidLidLocation = 0x8208001F
PidLidAppointmentStartWhole = 0x820D0040
PidLidAppointmentEndWhole = 0x820E0040
PidLidAppointmentSubType = 0x8215000B
PidLidAppointmentRecur = 0x82160102
PidLidTimeZoneDescription = 0x8234001F

# PSETID_Task.
PidLidTaskStatus = 0x81010003
PidLidPercentComplete = 0x81020005
PidLidTaskStartDate = 0x81040040
PidLidTaskDueDate = 0x81050040
PidLidTaskDateCompleted = 0x810F0040
PidLidTaskRecurrence = 0x81160102
PidLidTaskComplete = 0x811C000B

# PSETID_Note.
PidLidNoteColor = 0x8B000003
PidLidNoteWidth = 0x8B020003
PidLidNoteHeight = 0x8B030003
PidLidNoteX = 0x8B040003
PidLidNoteY = 0x8B050003

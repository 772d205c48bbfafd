-- The files of an incident. FileName is relative to the setting "Attachments Folder", to the numbered folder of
-- FolderNo, or a full path with a drive.
CREATE TABLE IncdAttachment (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    SeqNo INTEGER NOT NULL,
    FileName TEXT,
    OriginalFileName TEXT,
    -- Not checked against attachment_folder: the rows of a folder that was given up can still be read.
    FolderNo INTEGER,
    Description TEXT,
    Notes TEXT,
    UserId TEXT,
    UserDate TEXT,
    PRIMARY KEY (IncidentNo, SeqNo)
);

-- The SeqNo of the attachment that is the cover image.
ALTER TABLE incident ADD COLUMN PrimaryAttachmentSeqNo INTEGER;

CREATE TABLE attachment_folder (
    folder_no INTEGER PRIMARY KEY,
    path TEXT NOT NULL
);

ALTER TABLE incident ADD COLUMN ReportingOfficerNo INTEGER REFERENCES employee (officer_no);
ALTER TABLE incident ADD COLUMN K9HandlerNo INTEGER REFERENCES employee (officer_no);

CREATE TABLE IncdAssignment (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    SeqNo INTEGER NOT NULL,
    -- "user:" and a sign-on name, or "team:" and a value of code table 228. One column cannot refer to two
    -- tables, so that the database does not check it.
    AssignedTo TEXT,
    PRIMARY KEY (IncidentNo, SeqNo)
);

-- A value of code table 228; NULL for a person without a team.
ALTER TABLE employee ADD COLUMN dept_team_no INTEGER;

CREATE TABLE incident (
    IncidentNo INTEGER PRIMARY KEY,
    CaseNo TEXT UNIQUE,
    ReportedAt TEXT,
    OccurredAt TEXT,
    Summary TEXT,
    Address TEXT,
    City TEXT,
    Status TEXT,
    LocationTypeNo INTEGER,
    WeaponNo INTEGER,
    BiasNo INTEGER,
    Narrative TEXT,
    PrimaryOffenseSeqNo INTEGER,
    RowVersion INTEGER NOT NULL,
    -- Case number, summary and address with their case folded: databases differ in how they fold letters.
    SearchText TEXT NOT NULL
);

CREATE TABLE IncdOffense (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    SeqNo INTEGER NOT NULL,
    OffenseNo INTEGER REFERENCES offense_code (offense_no),
    Completed INTEGER,
    PRIMARY KEY (IncidentNo, SeqNo)
);

CREATE TABLE IncdSuspect (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    SeqNo INTEGER NOT NULL,
    SuspectName TEXT,
    DateOfBirth TEXT,
    RaceNo INTEGER,
    SexNo INTEGER,
    PRIMARY KEY (IncidentNo, SeqNo)
);

CREATE TABLE IncdVictim (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    SeqNo INTEGER NOT NULL,
    VictimName TEXT,
    DateOfBirth TEXT,
    SexNo INTEGER,
    InjuryNo INTEGER,
    PRIMARY KEY (IncidentNo, SeqNo)
);

CREATE TABLE IncdWitness (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    SeqNo INTEGER NOT NULL,
    WitnessName TEXT,
    PRIMARY KEY (IncidentNo, SeqNo)
);

CREATE TABLE IncdOther (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    SeqNo INTEGER NOT NULL,
    OtherName TEXT,
    PRIMARY KEY (IncidentNo, SeqNo)
);

CREATE INDEX incident_reported_at ON incident (ReportedAt);

INSERT INTO key_sequence (name, last) VALUES ('incident', 0);

-- The coordinates of an incident, and what the last geocoding of its address said.
ALTER TABLE incident ADD COLUMN Latitude TEXT;
ALTER TABLE incident ADD COLUMN Longitude TEXT;
ALTER TABLE incident ADD COLUMN GeocodeOnSave INTEGER;
ALTER TABLE incident ADD COLUMN GeocodeStatus INTEGER;
ALTER TABLE incident ADD COLUMN GeocodeAccuracy DOUBLE PRECISION;
ALTER TABLE incident ADD COLUMN GeocodeAccuracyType TEXT;
ALTER TABLE incident ADD COLUMN GeocodeError TEXT;
ALTER TABLE incident ADD COLUMN GeocodeInputAddress TEXT;
ALTER TABLE incident ADD COLUMN GeocodeOutputAddress TEXT;

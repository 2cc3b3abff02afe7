-- The role of those who work with the desk in a book: what it needs, and no more. Replace
--   desk_user, the role; book1, the schema of the book; books, the database.
-- To be run by the owner of the tables, who may make roles.
create role desk_user login;
revoke create on schema book1 from public;
-- A temporary table would hide the book's own table of that name.
revoke temporary on database books from public;
grant usage on schema book1 to desk_user;
grant select on book1.gl_code,book1.gl_accvouch,book1.gl_accass,book1.gl_accsum,book1.tvxbz,book1.tvxjldw,book1.xt_accinformation,book1.xt_objects,book1.desk_identifier to desk_user;
grant insert,update,delete on book1.gl_code to desk_user;
grant insert,update on book1.gl_accvouch,book1.gl_accass,book1.gl_accsum,book1.desk_identifier to desk_user;
-- The history of the accounts: written by the triggers with the role's own rights, never changed.
grant select,insert on book1.desk_command,book1.desk_change,book1.desk_moved to desk_user;

// What the gateway answers: a row a method and path, with the words of its description.
#pragma once

#include <httplib.h>

#include <string>
#include <vector>

#include "web/server/problem.h"

namespace kobd::web
{
struct Services;

struct Call
{
    Services& services;
    const httplib::Request& request;
    std::vector<std::string> names = {};  // what stands in the path for each {name} of the route's
    Json body = {};                       // of a request that has one: an object

    bool HasQuery(const char* name) const { return request.has_param(name); }
    std::string Query(const char* name, const char* otherwise = "") const
    {
        return HasQuery(name) ? request.get_param_value(name) : otherwise;
    }
    // What the query says with NAME=0 or NAME=1; CheckQuery lets nothing else through.
    bool Flag(const char* name, bool otherwise) const { return Query(name, otherwise ? "1" : "0") != "0"; }
};

struct Reply
{
    Json body = {};
    int status = 200;
    std::string location = {};   // of what was made
    bool listen = false;         // the client gets events from now on
    std::string_view page = {};  // in place of the body: a file of the page
    const char* type = nullptr;  // of the file
};

struct Route
{
    const char* method;
    const char* path;  // "/api/objects/{name}"
    Reply (*answer)(const Call&);
    const char* summary;
    const char* query;  // names of query parameters, separated by blanks
    const char* body;   // what the body is, in words; nullptr: there is none
};

extern const std::vector<Route> kRoutes;

// The route of a request, and what its path says for each {name}. Throws a Problem when there is none.
const Route& FindRoute(const std::string& method, const std::string& path, std::vector<std::string>* names);

// Throws a Problem 400 for a query parameter that the route does not take, and for a flag that is neither 0 nor 1.
void CheckQuery(const Route& route, const httplib::Request& request);
}  // namespace kobd::web
